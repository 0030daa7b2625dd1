#pragma once

#include <QByteArray>
#include <QString>
#include <chrono>
#include <stdexcept>
#include <vector>

/// A piece of a recorded conversation, as it passed in one go.
struct RecordedPiece
{
    bool sent = false; ///< by the program; otherwise by the switch
    std::chrono::milliseconds time{0};
    QByteArray bytes;
};

/// What one program and one switch said to each other.
struct Recording
{
    bool serial = true; ///< over a serial line; otherwise over UDP
    std::vector<RecordedPiece> pieces;
};

/// A recording that cannot be used; what() is a text for the user.
class BadRecording : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads `file`: JSON lines, in the order in which the pieces passed, such as
/// {"bytes":"2f2f726c0d","direction":"sent","name":"desk-1","road":"serial","text":"//rl\r","time":12}
/// with "direction" sent or received, "road" serial, udp or module, "bytes" in hexadecimal digits
/// and "time" in milliseconds. "text" is for people and not read; lines of the road module, a
/// network module's management, are skipped.
///
/// `name` chooses the device; empty: the only one that there is. Throws BadRecording, with the
/// line's number where it is a line's fault.
Recording readRecording(const QString &file, const QString &name);
