#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTableWidget>
#include <QTimer>
#include <functional>

namespace testsupport {

// Hands the next visible modal widget to `answer` (which should close it),
// polling from a timer; gives up silently after `timeoutMs`. Modals already up
// when asked (a modal browser, the box being answered) are not the next one.
inline void answerNextModal(std::function<void(QWidget *)> answer, int timeoutMs = 5000)
{
    QList<QPointer<QWidget>> before;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isModal() && widget->isVisible())
            before.append(widget);
    }
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer,
                     [timer, answer, before, deadline = QDeadlineTimer(timeoutMs)] {
                         QWidget *modal = QApplication::activeModalWidget();
                         const bool shown = modal && modal->isVisible() && !before.contains(modal);
                         if (shown || deadline.hasExpired()) {
                             timer->stop();
                             timer->deleteLater();
                         }
                         if (shown)
                             answer(modal);
                     });
    timer->start(10);
}

// Presses the box's button with the given text (empty: its default, else first).
inline void press(QMessageBox *box, const QString &buttonText)
{
    QAbstractButton *target = box->defaultButton();
    for (QAbstractButton *button : box->buttons()) {
        if (!buttonText.isEmpty() && button->text().remove(QLatin1Char('&')) == buttonText)
            target = button;
    }
    if (!target)
        target = box->buttons().value(0);
    target ? target->click() : void(box->close());
}

// The row of the first cell showing exactly `text`, or -1.
inline int rowOf(const QTableWidget *table, const QString &text)
{
    const QList<QTableWidgetItem *> found = table->findItems(text, Qt::MatchExactly);
    return found.isEmpty() ? -1 : found.first()->row();
}

// Presses the next message box's button with the given text (empty: its
// default, else first) and stores its title and text; other dialogs are rejected.
struct SeenBox
{
    QString title, text;
    bool seen = false;
};
inline void answerNextMessageBox(SeenBox *seen, const QString &buttonText = QString(),
                                 int timeoutMs = 5000)
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
            press(box, buttonText);
        },
        timeoutMs);
}

} // namespace testsupport
