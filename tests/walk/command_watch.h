#pragma once

#include "desk.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QStringList>
#include <array>

/// Watches that the switches get what the user asked for and nothing else.
///
/// Every control that the user touches announces what it may send to the switch that is chosen at
/// that moment. A command that arrives without having been announced for the switch at which it
/// arrives is a complaint, and so is one that the switch does not know; a question is one where the
/// switch has not been the chosen one for a while. What was announced in calm times and never came
/// is a complaint as well.
class CommandWatch
{
public:
    /// The switch that is chosen from now on; 0: none that is known.
    void choose(int unit);
    int chosen() const { return chosen_; }

    /// `text` may arrive at the chosen switch, once. A text that ends in "*" stands for all that
    /// begin so.
    void announce(const QByteArray &text) { add(text, false); }
    /// The same of one that has to arrive, unless a switch is in trouble.
    void announceSurely(const QByteArray &text) { add(text, true); }
    void take(const DeskEvent &event);

    /// Something has happened to a switch or to the connection: what is on its way may be lost, and
    /// what is announced from now on too, until it has been calm for a while.
    void noteTrouble();
    /// Whether something that has to arrive has not.
    bool isWaiting() const;
    /// What had been announced and has not come by now does not count any more.
    void settle();

    /// What was wrong since the last call.
    QStringList takeComplaints();
    int commands() const { return commands_; }

private:
    struct Announced
    {
        int unit;
        QByteArray text;
        bool isSure;
        QElapsedTimer since;
    };

    void add(const QByteArray &text, bool surely);
    bool wasAnnounced(int unit, const QByteArray &text);
    void complain(const DeskEvent &event, const char *why);

    int chosen_ = 0;
    std::array<QElapsedTimer, 3> sinceLeft_; ///< by unit: since another was chosen
    QElapsedTimer calm_;
    QList<Announced> announced_;
    QStringList complaints_;
    int commands_ = 0;
};
