#pragma once

#include <QString>
#include <cstdio>
#include <string>

/// Standard output or standard error. Everything that is written is on its way at once.
class Output
{
public:
    explicit Output(std::FILE *file) : file_(file) {}

    /// Writes `text` (UTF-8). After it could not be, nothing more is written.
    void write(const std::string &text);
    /// One line, whose control characters are made visible.
    void writeLine(const QString &line);

    /// Why it could not be written, in the system's words; empty when all is well, and when whoever
    /// reads has had enough and gone.
    const QString &problem() const { return problem_; }
    /// Whether nobody reads any more, for whatever reason.
    bool hasEnded() const { return hasEnded_; }

    /// Its number for the system.
    int descriptor() const;
    /// Whether it is a terminal.
    bool isTerminal() const;
    /// Whether colours are welcome: it is a terminal, and NO_COLOR is not set.
    bool takesColours() const;

private:
    std::FILE *file_;
    QString problem_;
    bool hasEnded_ = false;
};

/// `text` made visible, see asOneLine.
QString visible(const QString &text);

/// Whether standard input is a terminal.
bool isInputTerminal();
