#include "steps.h"

#include <QFile>

Step readStep(const QByteArray &line)
{
    Step step;
    const qsizetype tilde = line.lastIndexOf(" ~");
    step.answers = tilde < 0 ? 0 : line.mid(tilde + 2).toULongLong();
    const QByteArray text = line.left(tilde < 0 ? line.size() : tilde);
    const qsizetype blank = text.indexOf(' ');
    step.action = text.left(blank < 0 ? text.size() : blank);
    step.rest = blank < 0 ? QByteArray() : text.mid(blank + 1);
    return step;
}

bool isOfDesk(const Step &step)
{
    static const QByteArrayList ofDesk = {"fault", "panel",   "flood", "unplug",
                                          "plug",  "factory", "wait"};
    return ofDesk.contains(step.action);
}

bool writePlan(const QString &path, const WalkPlan &plan)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    file.write("# seed " + QByteArray::number(qulonglong{plan.seed}) + "\n# road " +
               nameOf(plan.road) + "\n" + plan.steps.join('\n') + "\n");
    return file.flush();
}

std::optional<WalkPlan> readPlan(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    WalkPlan plan;
    std::optional<Road> road;
    const QByteArrayList lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("# seed "))
            plan.seed = line.mid(7).toULongLong();
        else if (line.startsWith("# road "))
            road = roadNamed(line.mid(7));
        else if (!line.isEmpty() && !line.startsWith('#'))
            plan.steps.append(line);
    }
    if (!road)
        return std::nullopt;
    plan.road = *road;
    return plan;
}

std::optional<Road> roadNamed(const QByteArray &name)
{
    if (name == "serial")
        return Road::Serial;
    return name == "udp" ? std::optional(Road::Udp) : std::nullopt;
}

const char *nameOf(Road road)
{
    return road == Road::Serial ? "serial" : "udp";
}

int stepsIn(const QByteArrayList &lines)
{
    return static_cast<int>(lines.size() - lines.count("check"));
}
