#include "tarnis/dialogs/graph2dfilterdialog.h"

#include "tarnis/foundation/retranslator.h"

#include "ui_graph2dfilterdialog.h"

#include <QPointer>

namespace {

// The last accepted filter, for the next dialog of the process.
Graph2DFilter rememberedFilter;

std::array<int*, 26> valuesOf(Graph2DFilter& filter)
{
    std::array<int*, 26> values {};
    std::size_t next = 0;
    for (auto& row : filter.matrix) {
        for (int& weight : row)
            values[next++] = &weight;
    }
    values[next] = &filter.divisor;
    return values;
}

} // namespace

Graph2DFilterDialog::Graph2DFilterDialog(QWidget* parent)
    : QDialog(parent)
    , ui(std::make_unique<Ui::Graph2DFilterDialog>())
{
    qRegisterMetaType<Graph2DFilter>("Graph2DFilter");
    ui->setupUi(this);
    tarnis::onLanguageChange(*this, [this] { ui->retranslateUi(this); });
    const auto values = valuesOf(rememberedFilter);
    const auto edits = fields();
    for (std::size_t i = 0; i < values.size(); ++i)
        edits[i]->setText(QString::number(*values[i]));
    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &Graph2DFilterDialog::onAccepted);
}

Graph2DFilterDialog::~Graph2DFilterDialog() = default;

std::array<QLineEdit*, 26> Graph2DFilterDialog::fields() const
{
    return { ui->matrix11LineEdit, ui->matrix12LineEdit, ui->matrix13LineEdit, ui->matrix14LineEdit,
        ui->matrix15LineEdit, ui->matrix21LineEdit, ui->matrix22LineEdit, ui->matrix23LineEdit, ui->matrix24LineEdit,
        ui->matrix25LineEdit, ui->matrix31LineEdit, ui->matrix32LineEdit, ui->matrix33LineEdit, ui->matrix34LineEdit,
        ui->matrix35LineEdit, ui->matrix41LineEdit, ui->matrix42LineEdit, ui->matrix43LineEdit, ui->matrix44LineEdit,
        ui->matrix45LineEdit, ui->matrix51LineEdit, ui->matrix52LineEdit, ui->matrix53LineEdit, ui->matrix54LineEdit,
        ui->matrix55LineEdit, ui->divisorLineEdit };
}

void Graph2DFilterDialog::onAccepted()
{
    Graph2DFilter filter;
    const auto values = valuesOf(filter);
    const auto edits = fields();
    for (std::size_t i = 0; i < values.size(); ++i)
        *values[i] = edits[i]->text().toInt(); // 0 if it is not a number
    rememberedFilter = filter;
    const QPointer<Graph2DFilterDialog> guard(this);
    Q_EMIT accepted(filter);
    if (guard)
        QDialog::accept();
}
