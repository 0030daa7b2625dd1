#pragma once

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// What fuzz targets are made of. A target takes any bytes and requires what must hold of them.

/// One run; both the fuzzer and the test over the corpus call it. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Ends the program with `promise` and `found` on standard error unless `holds`.
void require(bool holds, std::string_view promise, std::string_view found = {});

/// Whether `text` has a control character in it, one beyond ASCII included.
bool hasControlCharacter(const QString &text);
/// The same of UTF-8.
bool hasControlCharacter(std::string_view text);

/// `data` as text for functions that take some.
std::string_view textOf(const std::uint8_t *data, std::size_t size);

/// Takes values off the front of the fuzzer's bytes. Where there are no more, all that follows is
/// zero, false or empty.
class Choices
{
public:
    Choices(const std::uint8_t *data, std::size_t size) : left_(textOf(data, size)) {}

    /// The next byte, 0 to 255.
    int byte();
    /// A number from `first` to `last`, out of one byte.
    int number(int first, int last);
    bool flag() { return (byte() & 1) != 0; }
    /// The bytes up to the next line feed, which is taken as well.
    std::string line();
    /// The same as UTF-8.
    QString textLine() { return QString::fromStdString(line()); }
    /// `size` bytes, filled up with zeros.
    QByteArray bytes(int size);
    /// All that is left.
    std::string rest() { return std::string(left_); }
    bool isAtEnd() const { return left_.empty(); }

private:
    std::string_view left_;
};
