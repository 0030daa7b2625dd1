#include "command_watch.h"

#include <algorithm>
#include <utility>

namespace {
/// How long what was written to a switch may take to be reported.
constexpr qint64 onTheWay = 3000; // ms

/// How long nothing may have gone wrong for a command to be sure to arrive.
constexpr qint64 untilCalm = 500; // ms

bool isQuestion(const QByteArray &text)
{
    return text == "//rl" || text == "//??" || text == "//BP";
}

bool matches(const QByteArray &announced, const QByteArray &text)
{
    return announced.endsWith('*') ? text.startsWith(announced.chopped(1)) : text == announced;
}

/// What the desk itself did to a switch that was restarting.
bool isOfDesk(const QByteArray &text)
{
    return text.startsWith("press ") || text.startsWith("flood ");
}
} // namespace

void CommandWatch::choose(int unit)
{
    if (unit == chosen_)
        return;
    sinceLeft_.at(static_cast<std::size_t>(chosen_)).start();
    chosen_ = unit;
}

void CommandWatch::add(const QByteArray &text, bool surely)
{
    const bool isCalm = calm_.isValid() && calm_.elapsed() > untilCalm;
    Announced announced{chosen_, text, surely && isCalm, {}};
    announced.since.start();
    announced_.append(announced);
}

void CommandWatch::noteTrouble()
{
    calm_.start();
    for (Announced &each : announced_)
        each.isSure = each.isSure && each.since.elapsed() > untilCalm;
}

bool CommandWatch::isWaiting() const
{
    return std::any_of(announced_.cbegin(), announced_.cend(),
                       [](const Announced &each) { return each.isSure; });
}

void CommandWatch::settle()
{
    for (const Announced &each : std::as_const(announced_)) {
        if (each.isSure)
            complain({DeskEvent::Kind::Other, each.unit, each.text, {}},
                     "was asked for and never came");
    }
    announced_.clear();
}

void CommandWatch::take(const DeskEvent &event)
{
    if (event.kind == DeskEvent::Kind::ModuleRejected && event.text.startsWith("frame rejected"))
        complain(event, "is what a module says of a frame");
    const bool isRejected = event.kind == DeskEvent::Kind::Rejected;
    if ((event.kind != DeskEvent::Kind::Command && !isRejected) || isOfDesk(event.text))
        return;
    ++commands_;
    if (isQuestion(event.text)) {
        const QElapsedTimer &left = sinceLeft_.at(static_cast<std::size_t>(event.unit));
        if (event.unit != chosen_ && (!left.isValid() || left.elapsed() > onTheWay))
            complain(event, "went to a switch that was not chosen");
    } else if (!wasAnnounced(event.unit, event.text)) {
        complain(event, "was asked for by nobody there");
    }
    // A name that could be taken for an answer is the user's to choose; that it is refused is the
    // switch's.
    const bool isExcused =
        event.reason == "the switch is restarting" ||
        (event.text.startsWith("//MM") && event.reason.contains("switch's own answers"));
    if (isRejected && !isExcused)
        complain(event, ("was refused: " + event.reason).constData());
}

QStringList CommandWatch::takeComplaints()
{
    return std::exchange(complaints_, {});
}

bool CommandWatch::wasAnnounced(int unit, const QByteArray &text)
{
    // An earlier one of the same text may have been lost: the sure one is what has come.
    for (const bool sure : {true, false}) {
        const auto found =
            std::find_if(announced_.begin(), announced_.end(), [&](const Announced &each) {
                return each.unit == unit && each.isSure == sure && matches(each.text, text);
            });
        if (found != announced_.end()) {
            announced_.erase(found);
            return true;
        }
    }
    return false;
}

void CommandWatch::complain(const DeskEvent &event, const char *why)
{
    complaints_.append(QStringLiteral("%1 at switch %2 %3")
                           .arg(QString::fromLatin1(event.text))
                           .arg(event.unit)
                           .arg(QString::fromLatin1(why)));
}
