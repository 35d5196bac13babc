#pragma once

#include <QSet>
#include <QString>
#include <QVector>
#include <optional>

namespace veltor {

// The cameras of the device tables, kept beside them so that a reply's
// duplicate test and its row cost the same whatever the table's length: the
// MAC texts listed, and the rows' ordering keys in row order, sorted by
// construction since every row goes in at its key's place.
class ListedCameras
{
public:
    // The row a camera with this MAC and key goes to, now taken; empty when
    // the MAC (compared exactly) is listed already.
    std::optional<int> admit(const QString &mac, int key);
    void clear();
    int size() const { return int(keys.size()); }

private:
    QSet<QString> macs;
    QVector<int> keys;
};

} // namespace veltor
