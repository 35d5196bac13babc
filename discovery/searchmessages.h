#pragma once

#include <QByteArray>

// The two search requests sent in every search round, byte for byte.
namespace veltor {

constexpr int kBinarySearchSize = 27;
constexpr int kHdsSearchSize = 112;

// "MO_I" header, zeros, two little-endian 32-bit 4s, zeros, a final 1.
QByteArray binarySearchDatagram();

// "SEARCH * HDS/1.0" with CSeq 0 (the search never uses the window's counter)
// and the fixed Client-ID; header only, no body, no terminating zero.
QByteArray hdsSearchRequest();

} // namespace veltor
