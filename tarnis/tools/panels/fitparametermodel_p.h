// The table of a fit's parameters.
#pragma once

#include "tarnis/tools/panels/fitsetup_p.h"
#include "tarnis/tools/panels/parametertext_p.h"

#include <QAbstractTableModel>

namespace tarnis {

/// Parameters of the last result with the user's constraints, then derived quantities. Values are shown as
/// value(uncertainty), names as labels in the user's language. Edits change the setup.
class FitParameterModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Value, Unit, Fixed, Lower, Upper, Tie, Columns };

    /// The setup must outlive the model.
    explicit FitParameterModel(FitSetup& setup, QObject* parent = nullptr);

    /// additions: further rows after the derived quantities, for example energies.
    void setResult(const FitResult& result, bool isGuess, std::vector<DerivedQuantity> additions = {});
    /// The unit of the X axis, for the texts.
    void setUnit(const QString& unit);
    /// The texts for the name of a parameter or of a derived quantity.
    ParameterText labelsOf(const QString& name) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

Q_SIGNALS:
    void edited(); ///< the setup has changed
    void refused(const QString& reason); ///< an invalid entry, with the reason for the user

private:
    std::vector<FitParameter> rowsOf(const FitResult& result) const;
    void replaceDerived(std::vector<DerivedQuantity> derived, std::vector<DerivedQuantity> additions);
    ParameterText textAt(int row) const;
    const FitParameter* parameterAt(int row) const;
    const DerivedQuantity* derivedAt(int row) const;
    QVariant shown(const FitParameter& parameter, int column) const;
    bool edit(FitConstraint& constraint, const FitParameter& parameter, int column, const QString& text);

    FitSetup& m_setup;
    QString m_unit;
    std::vector<FitParameter> m_parameters;
    std::vector<DerivedQuantity> m_derived;
    std::vector<DerivedQuantity> m_additions;
    bool m_isGuess = false;
};

/// The shown text of a parameter: value(uncertainty), asymmetric if the profile differs by more than a tenth.
QString parameterText(const FitParameter& parameter);

} // namespace tarnis
