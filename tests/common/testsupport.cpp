#include "testsupport.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

namespace testsupport {

void answerNextModal(std::function<void(QWidget *)> answer, int timeoutMs)
{
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer,
                     [timer, answer, deadline = QDeadlineTimer(timeoutMs)] {
                         QWidget *modal = QApplication::activeModalWidget();
                         const bool shown = modal && modal->isVisible();
                         if (shown || deadline.hasExpired()) {
                             timer->stop();
                             timer->deleteLater();
                         }
                         if (shown)
                             answer(modal);
                     });
    timer->start(10);
}

void answerNextMessageBox(SeenBox *seen, const QString &buttonText, int timeoutMs)
{
    answerNextModal(
        [seen, buttonText](QWidget *modal) {
            auto *box = qobject_cast<QMessageBox *>(modal);
            if (!box) {
                if (auto *dialog = qobject_cast<QDialog *>(modal))
                    dialog->reject();
                return;
            }
            *seen = {box->windowTitle(), box->text(), true};
            QAbstractButton *target = box->defaultButton();
            for (QAbstractButton *button : box->buttons()) {
                if (!buttonText.isEmpty() && button->text().remove(QLatin1Char('&')) == buttonText)
                    target = button;
            }
            if (!target)
                target = box->buttons().value(0);
            if (target)
                target->click();
            else
                box->close();
        },
        timeoutMs);
}

} // namespace testsupport
