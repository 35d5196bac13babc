#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace testsupport {

// Answers the next modal dialog or message box from a timer: polls for an
// active modal widget and hands it to `answer`, which should close it (for
// message boxes, see clickButton). Gives up silently after `timeoutMs`.
void answerNextModal(std::function<void(QWidget *)> answer, int timeoutMs = 5000);

// Answers the next message box by pressing its button with the given text
// (empty: its default/escape button) and stores title and text for the test.
struct SeenBox
{
    QString title;
    QString text;
    bool seen = false;
};
void answerNextMessageBox(SeenBox *seen, const QString &buttonText = QString(),
                          int timeoutMs = 5000);

} // namespace testsupport
