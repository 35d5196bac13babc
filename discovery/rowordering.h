#pragma once

#include <QVector>

namespace veltor {

// Row at which a camera with ordering key `key` is inserted, given the keys of
// the rows already listed: one past the last row whose key is smaller (signed
// comparison), so a camera goes before existing rows with an equal key. The
// keys are in row order, which this rule keeps sorted, so a binary search
// finds the row.
int insertionRow(const QVector<int> &rowKeys, int key);

} // namespace veltor
