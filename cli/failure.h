#pragma once

#include <QString>
#include <QStringList>
#include <stdexcept>
#include <utility>

/// What the program ends with. Of several devices the highest counts.
enum class ExitStatus {
    Ok = 0,
    Differs = 1,       ///< `diff` found differences
    Usage = 2,         ///< a mistake on the command line, a bad file or list, no password
    NoDevice = 3,      ///< cannot be opened, is not found, does not answer
    NotUnderstood = 4, ///< an answer that is none
    NotTaken = 5,      ///< a setting that the switch did not take
    BadCredentials = 6,
    Interrupted = 130
};

/// Why something was not done.
struct Failure
{
    ExitStatus status = ExitStatus::Usage;
    QString
        message; ///< "what, and what to do", without a full stop; visible text is made of it later
};

/// The word for `status` in JSON: "usage", "no-device", "not-understood", "not-taken",
/// "credentials", "interrupted"; empty for what is no failure.
QString kindOf(ExitStatus status);

/// Ctrl+C, while the user was asked something and nothing had been sent. Thrown.
struct Interrupted
{
};

/// A mistake of the user's, found before anything is sent. One line each.
class UsageError : public std::runtime_error
{
public:
    explicit UsageError(const QString &line) : UsageError(QStringList{line}) {}
    explicit UsageError(QStringList lines)
        : std::runtime_error(lines.join(QLatin1Char('\n')).toStdString()), lines_(std::move(lines))
    {
    }

    const QStringList &lines() const { return lines_; }

private:
    QStringList lines_;
};
