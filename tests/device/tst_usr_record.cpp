#include "device/usr_frame.h"

#include <QTest>

/// What a record may keep of the network module's frames.
class UsrRecordTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRecordOfARequestHoldsNoPassword_data()
    {
        QTest::addColumn<QByteArray>("request");
        QTest::addColumn<QByteArray>("record");
        const QByteArray search("\xff\x01\x01\x02", 4);
        QTest::newRow("search") << search << search;
        QTest::newRow("login") << QByteArray("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3cuserna"
                                             "pass12\xa5",
                                             22)
                               << QByteArray("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3cuserna"
                                             "******\0",
                                             22);
        QTest::newRow("commit") << QByteArray("\xff\x13\x04\x9c\xa5\x25\x1a\x2b\x3c"
                                              "admin\0admin\0\x10",
                                              22)
                                << QByteArray("\xff\x13\x04\x9c\xa5\x25\x1a\x2b\x3c"
                                              "admin\0******\0",
                                              22);
        QTest::newRow("login without a MAC") << QByteArray("\xff\x13\x03userna"
                                                           "pass12\xa5",
                                                           16)
                                             << QByteArray("\xff\x13\x03userna******\0", 16);
        // Six letters e with an acute accent overflow their field by six bytes.
        QTest::newRow("login with a long password")
            << QByteArray("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3cuserna"
                          "\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\x01",
                          28)
            << QByteArray("\xff\x13\x03\x9c\xa5\x25\x1a\x2b\x3c******************\0", 28);
        QTest::newRow("login of the usual size, without a MAC and with a long password")
            << QByteArray("\xff\x13\x03userna"
                          "\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\x01",
                          22)
            << QByteArray("\xff\x13\x03userna************\0", 22);
        QTest::newRow("cut short")
            << QByteArray("\xff\x13\x03\x9c", 4) << QByteArray("\xff\x13\x03\x9c", 4);
        const QByteArray setupStart("\xff\x56\x05\x9c\xa5\x25\x1a\x2b\x3cuserna", 15);
        const QByteArray setupAddresses("\x09\x38\x03\x80\x20\x19\x50\x00\x02"
                                        "\x07\x01\xa8\xc0\x01\x01\xa8\xc0\x00\xff\xff\xff",
                                        21);
        const QByteArray setupEnd("\x02\x01\x00\x00\x9c\xa5\x25\x1a\x2b\x3c"
                                  "\x10\x0e\x00\x00\x01\x00\x00\x00",
                                  18);
        const QByteArray longName("Meeting Room 4-5");
        QTest::newRow("setup") << setupStart + "pass12" + setupAddresses + longName +
                                      "newuse"
                                      "secret" +
                                      setupEnd + "\x7b"
                               << setupStart + "******" + setupAddresses + longName +
                                      "newuse"
                                      "******" +
                                      setupEnd + QByteArray(1, '\0');
        QTest::newRow("setup with a short name")
            << setupStart + "pass12" + setupAddresses + "Desk" +
                   "newuse"
                   "secret" +
                   setupEnd + "\x7b"
            << setupStart + "******" + setupAddresses + "Desk" +
                   "newuse"
                   "******" +
                   setupEnd + QByteArray(1, '\0');
        QTest::newRow("setup without a MAC")
            << QByteArray("\xff\x56\x05userna"
                          "pass12",
                          15) +
                   setupAddresses + longName +
                   "newuse"
                   "secret" +
                   QByteArray("\x02\x01\x00\x00\x10\x0e\x00\x00\x01\x00\x00\x00\x7b", 13)
            << QByteArray("\xff\x56\x05userna", 9) + QByteArray(67, '*') + QByteArray(1, '\0');
        QTest::newRow("setup without a MAC and with a long user name")
            << QByteArray("\xff\x56\x05"
                          "\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9pass12",
                          21) +
                   setupAddresses + longName +
                   "newuse"
                   "secret" +
                   QByteArray("\x02\x01\x00\x00\x10\x0e\x00\x00\x01\x00\x00\x00\x7b", 13)
            << QByteArray("\xff\x56\x05\xc3\xa9\xc3\xa9\xc3\xa9", 9) + QByteArray(73, '*') +
                   QByteArray(1, '\0');
        QTest::newRow("setup with a long new password")
            << setupStart + "pass12" + setupAddresses + longName +
                   "newuse"
                   "secret!" +
                   setupEnd + "\x7b"
            << setupStart.left(9) + QByteArray(80, '*') + QByteArray(1, '\0');
        // Without the three addresses there is room for a new password beyond ASCII in a setup that
        // is no longer than usual.
        const QByteArray noAddresses("\x09\x38\x03\x80\x20\x19\x50\x00\x02", 9);
        QTest::newRow("setup without addresses") << setupStart + "pass12" + noAddresses + longName +
                                                        "newuse"
                                                        "secret" +
                                                        setupEnd + "\x7b"
                                                 << setupStart + "******" + noAddresses + longName +
                                                        "newuse"
                                                        "******" +
                                                        setupEnd + QByteArray(1, '\0');
        QTest::newRow("setup without addresses and with a new password of 18 bytes")
            << setupStart + "pass12" + noAddresses + longName +
                   "newuse"
                   "\xe5\xaf\x86\xe7\xa0\x81\xe5\xaf\x86\xe7\xa0\x81\xe5\xaf\x86\xe7\xa0\x81" +
                   setupEnd + "\x7b"
            << setupStart.left(9) + QByteArray(79, '*') + QByteArray(1, '\0');
        QTest::newRow("setup without addresses and with a new password of eight bytes")
            << setupStart + "pass12" + noAddresses + longName +
                   "newuse"
                   "p\xc3\xa4ssw\xc3\xb6" +
                   setupEnd + "\x7b"
            << setupStart.left(9) + QByteArray(69, '*') + QByteArray(1, '\0');
        QTest::newRow("setup without a MAC and with a new password like the bytes behind it")
            << QByteArray("\xff\x56\x05"
                          "\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9\xc3\xa9pass12",
                          21) +
                   setupAddresses + longName + "newuse" +
                   QByteArray("\x02\x01\x00\x00\x00\x00"
                              "\x02\x01\x00\x00\x10\x0e\x00\x00\x01\x00\x00\x00\x7b",
                              19)
            << QByteArray("\xff\x56\x05\xc3\xa9\xc3\xa9\xc3\xa9", 9) + QByteArray(73, '*') +
                   QByteArray(1, '\0');
    }

    void aRecordOfARequestHoldsNoPassword()
    {
        QFETCH(QByteArray, request);
        QTEST(usr_frame::requestForRecord(request), "record");
    }

    void aRecordOfAReplyHoldsWhatIsKnownOfIt()
    {
        const QByteArray refusal("\xff\x01\x03\x04", 4);
        QCOMPARE(usr_frame::replyForRecord(refusal), refusal);
        const QByteArray module = QByteArray("\xff\x24\x01\x00\x00\xc0\xa8\x01\x07"
                                             "\x9c\xa5\x25\x1a\x2b\x3c\x00\x00\x00\x00",
                                             19) +
                                  "Meeting Room 4-5" + QByteArray(2, '\0');
        QCOMPARE(usr_frame::replyForRecord(module), module);
        const QByteArray known("\xff\x00\x00\x80\x00\x00\x00\x00\x00"
                               "\x07\x01\xa8\xc0\x01\x01\xa8\xc0\x00\xff\xff\xff",
                               21);
        QCOMPARE(usr_frame::replyForRecord(known + "admin" + QByteArray(234, '\0')),
                 known + QByteArray(239, '*'));
    }
};

QTEST_GUILESS_MAIN(UsrRecordTest)
#include "tst_usr_record.moc"
