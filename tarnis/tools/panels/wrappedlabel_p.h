// A wrapped message of a panel.
#pragma once

#include <QLabel>

namespace tarnis {

/// Plain text in as many lines as it needs, which the user can select. QLabel lays each new text out at several trial
/// widths to choose its own width, which takes longer than painting it; this label uses the width that it has.
class WrappedLabel : public QLabel {
public:
    explicit WrappedLabel(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;
};

} // namespace tarnis
