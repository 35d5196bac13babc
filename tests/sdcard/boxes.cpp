#include "boxes.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>

namespace {

void answerFrom(std::shared_ptr<BoxSequence> sequence, QStringList buttons, int timeoutMs)
{
    if (buttons.isEmpty())
        return;
    const QString button = buttons.takeFirst();
    testsupport::answerNextModal(
        [sequence, button, buttons, timeoutMs](QWidget *modal) {
            testsupport::SeenBox seen;
            auto *box = qobject_cast<QMessageBox *>(modal);
            seen.seen = box != nullptr;
            if (box) {
                seen.title = box->windowTitle();
                seen.text = box->text();
            }
            sequence->seen.append(seen);
            ++sequence->answered;
            // Wait for the following box before this one is gone from the screen.
            answerFrom(sequence, buttons, timeoutMs);
            if (!box) {
                modal->close();
                return;
            }
            QAbstractButton *target = box->defaultButton();
            for (QAbstractButton *b : box->buttons()) {
                if (!button.isEmpty() && b->text().remove(QLatin1Char('&')) == button)
                    target = b;
            }
            if (!target && !box->buttons().isEmpty())
                target = box->buttons().first();
            target->click();
        },
        timeoutMs);
}

} // namespace

std::shared_ptr<BoxSequence> answerBoxes(const QStringList &buttons, int timeoutMs)
{
    auto sequence = std::make_shared<BoxSequence>();
    answerFrom(sequence, buttons, timeoutMs);
    return sequence;
}
