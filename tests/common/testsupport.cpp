#include "testsupport.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <memory>

namespace testsupport {

void answerNextModal(std::function<void(QWidget *)> answer, int timeoutMs)
{
    auto clock = std::make_shared<QElapsedTimer>();
    clock->start();
    auto *timer = new QTimer(qApp);
    timer->setInterval(10);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, clock, answer, timeoutMs] {
        QWidget *modal = QApplication::activeModalWidget();
        if (modal && modal->isVisible()) {
            timer->stop();
            timer->deleteLater();
            answer(modal);
        } else if (clock->elapsed() > timeoutMs) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start();
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
            seen->title = box->windowTitle();
            seen->text = box->text();
            seen->seen = true;
            QAbstractButton *target = box->defaultButton();
            for (QAbstractButton *button : box->buttons()) {
                if (!buttonText.isEmpty() && button->text().remove(QLatin1Char('&')) == buttonText)
                    target = button;
            }
            if (!target && !box->buttons().isEmpty())
                target = box->buttons().first();
            if (target)
                target->click();
            else
                box->close();
        },
        timeoutMs);
}

} // namespace testsupport
