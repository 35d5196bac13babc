#pragma once

#include "testsupport.h"

#include <QStringList>
#include <QVector>
#include <memory>

// Answers the next modal boxes one after the other, pressing the given
// buttons in turn (an empty text: the default button), and records each.
struct BoxSequence
{
    QVector<testsupport::SeenBox> seen;
    int answered = 0;
};
std::shared_ptr<BoxSequence> answerBoxes(const QStringList &buttons, int timeoutMs = 20000);
