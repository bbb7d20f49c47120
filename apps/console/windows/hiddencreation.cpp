#include "windows/hiddencreation.h"

#include <tarnis/dialogs/namevaluelistdialog.h>

#include <QCoreApplication>
#include <QEvent>

namespace console {

namespace {

class HiddenLists : public QObject {
public:
    HiddenLists() { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() != QEvent::Polish) // comes before the window is mapped
            return false;
        if (auto* const list = qobject_cast<NameValueListDialog*>(object))
            list->setAttribute(Qt::WA_DontShowOnScreen);
        return false;
    }
};

} // namespace

QWidget* createHidden(const std::function<QWidget*()>& make)
{
    const HiddenLists hidden;
    return make();
}

} // namespace console
