#include "simulator/port_link.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <memory>
#include <stdexcept>

/// The symbolic link to a virtual port: what it may replace, and that it goes away.
class PortLinkTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        folder_ = std::make_unique<QTemporaryDir>();
        QVERIFY(folder_->isValid());
        link_ = folder_->filePath(QStringLiteral("switch"));
        target_ = makeFile(QStringLiteral("port"));
    }

    void itLeadsToThePortAndGoesAway()
    {
        {
            const PortLink link(link_, target_);
            QCOMPARE(QFileInfo(link_).symLinkTarget(), target_);
        }
        QVERIFY(!QFileInfo(link_).isSymLink());
        QVERIFY(QFile::exists(target_));
    }

    void itReplacesALinkThatLeadsNowhere()
    {
        QVERIFY(QFile::link(folder_->filePath(QStringLiteral("gone")), link_));
        const PortLink link(link_, target_);
        QCOMPARE(QFileInfo(link_).symLinkTarget(), target_);
    }

    void itReplacesALinkOfItsOwn()
    {
        QVERIFY(QFile::link(target_, link_));
        const PortLink link(link_, target_);
        QCOMPARE(QFileInfo(link_).symLinkTarget(), target_);
    }

    void itRefusesALinkThatLeadsElsewhere()
    {
        const QString other = makeFile(QStringLiteral("other"));
        QVERIFY(QFile::link(other, link_));
        QVERIFY_EXCEPTION_THROWN(PortLink(link_, target_), std::runtime_error);
        QCOMPARE(QFileInfo(link_).symLinkTarget(), other);
    }

    void itRefusesAFile()
    {
        makeFile(QStringLiteral("switch"));
        QVERIFY_EXCEPTION_THROWN(PortLink(link_, target_), std::runtime_error);
        QFile file(link_);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("content"));
    }

    void itRefusesAFolderThatDoesNotExist()
    {
        QVERIFY_EXCEPTION_THROWN(
            PortLink(folder_->filePath(QStringLiteral("none/switch")), target_),
            std::runtime_error);
    }

    void itLeavesALinkThatSomebodyElseHasPutThere()
    {
        const QString other = makeFile(QStringLiteral("other"));
        {
            const PortLink link(link_, target_);
            QVERIFY(QFile::remove(link_));
            QVERIFY(QFile::link(other, link_));
        }
        QCOMPARE(QFileInfo(link_).symLinkTarget(), other);
    }

private:
    QString makeFile(const QString &name)
    {
        QFile file(folder_->filePath(name));
        if (file.open(QIODevice::WriteOnly))
            file.write("content");
        return file.fileName();
    }

    std::unique_ptr<QTemporaryDir> folder_;
    QString link_;
    QString target_;
};

QTEST_GUILESS_MAIN(PortLinkTest)
#include "tst_port_link.moc"
