#include "resources.h"

#include <QByteArrayList>
#include <QDir>
#include <QFile>
#ifdef __GLIBC__
#include <malloc.h>
#endif

qint64 residentKiB()
{
#ifdef __GLIBC__
    malloc_trim(0); // what was freed is no longer the program's
#endif
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    const QByteArrayList lines = file.readAll().split('\n');
    for (const QByteArray &line : lines) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).simplified().split(' ').first().toLongLong();
    }
    return 0;
}

int openFiles()
{
    const QDir files(QStringLiteral("/proc/self/fd"));
    return static_cast<int>(
        files.entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size());
}

bool isResidentMemoryOurs()
{
#ifdef __SANITIZE_ADDRESS__
    return false;
#else
    return true;
#endif
}
