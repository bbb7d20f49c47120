#include "tarnis/tools/panels/fitparametermodel_p.h"

#include "tarnis/analysis/figures.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnis {

namespace {

constexpr double asymmetry = 0.1;

/// Parses a number in the user's or in the C locale.
std::optional<double> numberOf(const QString& text)
{
    bool isNumber = false;
    double number = text.toDouble(&isNumber);
    if (!isNumber)
        number = QLocale().toDouble(text, &isNumber);
    return isNumber && std::isfinite(number) ? std::optional<double>(number) : std::nullopt;
}

template <typename Quantity> bool haveSameNames(const std::vector<Quantity>& a, const std::vector<Quantity>& b)
{
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(), [](const Quantity& x, const Quantity& y) { return x.name == y.name; });
}

QString limitText(std::optional<double> limit)
{
    return limit ? QString::number(*limit, 'g', 10) : QString();
}

} // namespace

QString parameterText(const FitParameter& parameter)
{
    if (parameter.profile) {
        const double upper = parameter.profile->upper;
        const double lower = -parameter.profile->lower;
        const double error = parameter.shownError;
        if (upper > 0.0 && lower > 0.0
            && (std::fabs(upper - error) > asymmetry * error || std::fabs(lower - error) > asymmetry * error))
            return figureText(parameter.value, upper, lower);
    }
    return figureText(parameter.value, parameter.shownError);
}

FitParameterModel::FitParameterModel(FitSetup& setup, QObject* parent)
    : QAbstractTableModel(parent)
    , m_setup(setup)
{
}

// A constraint that was refused stays in the table, where it can be corrected.
std::vector<FitParameter> FitParameterModel::rowsOf(const FitResult& result) const
{
    std::vector<FitParameter> parameters = result.parameters;
    if (result.status != FitStatus::Refused || !parameters.empty() || m_setup.model.constraints.empty())
        return parameters;
    for (const QString& name : m_setup.model.parameterNames()) {
        FitParameter& parameter = parameters.emplace_back();
        parameter.name = name;
        parameter.value = m_setup.constraint(name).start.value_or(noNumber);
        parameter.error = parameter.shownError = noNumber;
    }
    return parameters;
}

void FitParameterModel::setResult(const FitResult& result, bool isGuess, std::vector<DerivedQuantity> additions)
{
    std::vector<FitParameter> parameters = rowsOf(result);
    const bool hasSameParameters = haveSameNames(m_parameters, parameters);
    const bool isSame =
        hasSameParameters && haveSameNames(m_derived, result.derived) && haveSameNames(m_additions, additions);
    m_isGuess = isGuess;
    if (!hasSameParameters) {
        beginResetModel();
        m_parameters = std::move(parameters);
        m_derived = result.derived;
        m_additions = std::move(additions);
        endResetModel();
        return;
    }
    // Keeps an open editor during a live fit of the same parameters, and the one whose entry is being handled.
    m_parameters = std::move(parameters);
    if (isSame) {
        m_derived = result.derived;
        m_additions = std::move(additions);
    } else {
        replaceDerived(result.derived, std::move(additions));
    }
    // A fit does not change the user's constraints, so only one column is painted again.
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0, isGuess ? Name : Value), index(rowCount() - 1, isGuess ? Tie : Value));
}

void FitParameterModel::replaceDerived(std::vector<DerivedQuantity> derived, std::vector<DerivedQuantity> additions)
{
    const int first = static_cast<int>(m_parameters.size());
    if (rowCount() > first) {
        beginRemoveRows({}, first, rowCount() - 1);
        m_derived.clear();
        m_additions.clear();
        endRemoveRows();
    }
    const int added = static_cast<int>(derived.size() + additions.size());
    if (added == 0)
        return;
    beginInsertRows({}, first, first + added - 1);
    m_derived = std::move(derived);
    m_additions = std::move(additions);
    endInsertRows();
}

void FitParameterModel::setUnit(const QString& unit)
{
    m_unit = unit;
}

ParameterText FitParameterModel::labelsOf(const QString& name) const
{
    return parameterTextOf(name, m_setup.model.background, m_unit);
}

ParameterText FitParameterModel::textAt(int row) const
{
    const FitParameter* const parameter = parameterAt(row);
    const DerivedQuantity* const derived = derivedAt(row);
    if (parameter == nullptr && derived == nullptr)
        return {};
    return labelsOf(parameter != nullptr ? parameter->name : derived->name);
}

int FitParameterModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_parameters.size() + m_derived.size() + m_additions.size());
}

int FitParameterModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : Columns;
}

const FitParameter* FitParameterModel::parameterAt(int row) const
{
    const auto i = static_cast<std::size_t>(row);
    return i < m_parameters.size() ? &m_parameters[i] : nullptr;
}

const DerivedQuantity* FitParameterModel::derivedAt(int row) const
{
    if (static_cast<std::size_t>(row) < m_parameters.size())
        return nullptr;
    auto i = static_cast<std::size_t>(row) - m_parameters.size();
    if (i < m_derived.size())
        return &m_derived[i];
    i -= m_derived.size();
    return i < m_additions.size() ? &m_additions[i] : nullptr;
}

QVariant FitParameterModel::shown(const FitParameter& parameter, int column) const
{
    const FitConstraint known = m_setup.constraint(parameter.name);
    switch (column) {
    case Value:
        if (std::isnan(parameter.value))
            return {};
        if (!m_isGuess && !parameter.fixed && (parameter.atLower || parameter.atUpper))
            return tr("%1 (at bound)")
                .arg(parameter.error > 0.0 ? parameterText(parameter) : QString::number(parameter.value, 'g', 6));
        return m_isGuess ? QString::number(parameter.value, 'g', 6) : parameterText(parameter);
    case Lower:
        return limitText(known.lower);
    case Upper:
        return limitText(known.upper);
    case Tie:
        return textOf(FitTie { known.tiedTo, known.factor, known.offset });
    default:
        return {};
    }
}

QVariant FitParameterModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const FitParameter* const parameter = parameterAt(index.row());
    if (role == Qt::CheckStateRole && index.column() == Fixed && parameter != nullptr)
        return m_setup.constraint(parameter->name).fixed ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::TextAlignmentRole && index.column() == Value)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole && index.column() == Unit)
        return tr("cts: counts, ch: channels, x: units of the axis");
    if (role == Qt::ToolTipRole && index.column() < Unit)
        return textAt(index.row()).toolTip;
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    if (index.column() == Name)
        return textAt(index.row()).label;
    if (index.column() == Unit)
        return textAt(index.row()).unit;
    if (parameter != nullptr) {
        if (role == Qt::EditRole && index.column() == Value)
            return std::isnan(parameter->value) ? QString() : QString::number(parameter->value, 'g', 10);
        return shown(*parameter, index.column());
    }
    const DerivedQuantity* const derived = derivedAt(index.row());
    if (derived == nullptr)
        return {};
    if (index.column() == Value)
        return m_isGuess ? QString::number(derived->value, 'g', 6) : figureText(derived->value, derived->error);
    return {};
}

QVariant FitParameterModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case Name:
        return tr("Parameter");
    case Value:
        return tr("Value");
    case Unit:
        return tr("Unit");
    case Fixed:
        return tr("Fixed");
    case Lower:
        return tr("Minimum");
    case Upper:
        return tr("Maximum");
    case Tie:
        return tr("Tied to");
    default:
        return {};
    }
}

Qt::ItemFlags FitParameterModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid() || parameterAt(index.row()) == nullptr || index.column() == Name || index.column() == Unit)
        return flags;
    return flags | (index.column() == Fixed ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
}

bool FitParameterModel::edit(FitConstraint& constraint, const FitParameter& parameter, int column, const QString& text)
{
    if (column == Tie) {
        const std::optional<FitTie> tie = fitTieOf(text);
        if (!tie || tie->other == parameter.name) {
            Q_EMIT refused(tr("Type another parameter, for example sigma1, 0.5 * area1 or centre1 + 10."));
            return false;
        }
        const std::vector<QString> names = m_setup.model.parameterNames();
        const bool isShown = std::any_of(m_parameters.begin(), m_parameters.end(),
            [&](const FitParameter& other) { return other.name == tie->other; });
        if (!tie->other.isEmpty() && !isShown && std::find(names.begin(), names.end(), tie->other) == names.end()) {
            Q_EMIT refused(QCoreApplication::translate(
                "tarnis::SpectrumFit", "The model has no parameter %1. Its parameters are: %2.")
                               .arg(tie->other, QStringList(names.begin(), names.end()).join(QStringLiteral(", "))));
            return false;
        }
        constraint.tiedTo = tie->other;
        constraint.factor = tie->factor;
        constraint.offset = tie->offset;
        return true;
    }
    const std::optional<double> number = numberOf(text);
    if (!number && !text.trimmed().isEmpty()) {
        Q_EMIT refused(tr("\"%1\" is not a number.").arg(text));
        return false;
    }
    switch (column) {
    case Value:
        constraint.start = number;
        constraint.fixed = constraint.fixed && number;
        return true;
    case Lower:
        constraint.lower = number;
        return true;
    case Upper:
        constraint.upper = number;
        return true;
    default:
        return false;
    }
}

bool FitParameterModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const FitParameter* const parameter = index.isValid() ? parameterAt(index.row()) : nullptr;
    if (parameter == nullptr)
        return false;
    FitConstraint constraint = m_setup.constraint(parameter->name);
    if (role == Qt::CheckStateRole && index.column() == Fixed) {
        constraint.fixed = value.toInt() == Qt::Checked;
        if (constraint.fixed && !std::isnan(parameter->value))
            constraint.start = parameter->value;
    } else if (role != Qt::EditRole || !edit(constraint, *parameter, index.column(), value.toString())) {
        return false;
    }
    m_setup.setConstraint(constraint);
    Q_EMIT dataChanged(index, index);
    Q_EMIT edited();
    return true;
}

} // namespace tarnis
