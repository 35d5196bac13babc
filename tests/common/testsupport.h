#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace testsupport {

// Hands the next visible modal widget to `answer` (which should close it),
// polling from a timer; gives up silently after `timeoutMs`.
void answerNextModal(std::function<void(QWidget *)> answer, int timeoutMs = 5000);

// Presses the next message box's button with the given text (empty: its
// default, else first) and stores its title and text.
struct SeenBox
{
    QString title;
    QString text;
    bool seen = false;
};
void answerNextMessageBox(SeenBox *seen, const QString &buttonText = QString(),
                          int timeoutMs = 5000);

} // namespace testsupport
