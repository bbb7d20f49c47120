// The table of a data-driven test: all columns in one statement, and a statement for each row.
#pragma once

#include <QTest>

namespace tarnis::testing {

/// `addColumns<QString, int>("text", "count")`: columns of these types, in order.
template <typename... Types, typename... Names> void addColumns(Names... names)
{
    static_assert(sizeof...(Types) == sizeof...(Names), "each column has a type and a name");
    (QTest::addColumn<Types>(names), ...);
}

/// `addCase("empty", "", 0)`: a row of this name. The types of the values are those of the columns; a literal is a
/// QString.
template <typename... Values> void addCase(const char* name, Values... values)
{
    (QTest::newRow(name) << ... << values);
}

} // namespace tarnis::testing
