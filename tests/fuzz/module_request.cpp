#include "device/usr_frame.h"
#include "property.h"
#include "simulator/module_frame.h"
#include "simulator/module_model.h"

#include <algorithm>
#include <variant>

namespace {
using Kind = ModuleRequest::Kind;

/// What a field of `size` bytes gives back: nothing is there of the zeros that fill it up.
std::string fieldOf(const QString &text)
{
    std::string bytes = text.toStdString();
    while (bytes.ends_with('\0'))
        bytes.pop_back();
    return bytes;
}

bool fits(const QString &text, int size)
{
    return text.toUtf8().size() <= size;
}

/// What may be typed: `longest` characters, which can be more bytes than their field has.
QString typed(Choices &choices, qsizetype longest)
{
    return choices.textLine().left(longest);
}

std::string dotted(const QByteArray &octets)
{
    std::string text;
    for (const char octet : octets)
        text += (text.empty() ? "" : ".") + std::to_string(static_cast<unsigned char>(octet));
    return text;
}

ModuleRequest requireRead(const QString &hexText, Kind kind)
{
    const QByteArray frame = usr_frame::toBytes(hexText);
    const auto decoded = decodeRequest(frame);
    if (const auto *rejection = std::get_if<Rejection>(&decoded))
        require(false, "the module understands every request: " + rejection->reason,
                hexText.toStdString());
    const auto &request = std::get<ModuleRequest>(decoded);
    require(request.kind == kind, "the module reads the request that is meant");
    return request;
}

void requireCredentials(const ModuleRequest &request, const QByteArray &mac, const QString &name,
                        const QString &password)
{
    require(std::equal(request.mac.begin(), request.mac.end(), mac.begin(),
                       [](std::uint8_t left, char right) {
                           return left == static_cast<unsigned char>(right);
                       }),
            "the module reads the MAC that is meant");
    require(request.username == fieldOf(name), "the module reads the user name", request.username);
    require(request.password == fieldOf(password), "the module reads the password",
            request.password);
}

QChar anotherOfItsSize(QChar character)
{
    const char16_t unit = character.unicode();
    if (unit < 0x80)
        return unit == u'x' ? u'y' : u'x';
    if (unit < 0x800)
        return unit == u'\u00e9' ? u'\u00e8' : u'\u00e9';
    if (character.isHighSurrogate())
        return character;
    if (character.isLowSurrogate())
        return unit == 0xdc00 ? QChar(0xdc01) : QChar(0xdc00);
    return unit == u'\u20ac' ? u'\u20aa' : u'\u20ac';
}

/// Another password of the same size.
QString another(const QString &password)
{
    QString changed = password;
    for (QChar &character : changed)
        character = anotherOfItsSize(character);
    return changed;
}

QByteArray recorded(const QString &hexText)
{
    const QByteArray request = usr_frame::toBytes(hexText);
    const QByteArray shown = usr_frame::requestForRecord(request);
    require(shown.size() == request.size(), "a record has the size of its frame");
    return shown;
}

void requireRequests(Choices &choices)
{
    const bool hasMac = choices.number(0, 3) != 0;
    const QByteArray macBytes = choices.bytes(6);
    usr_frame::Setup setup;
    setup.mac = hasMac ? usr_frame::toHexText(macBytes) : QString();
    setup.ipAllocation = choices.flag() ? QStringLiteral("00") : QStringLiteral("80");
    const QByteArray ip = choices.bytes(4);
    const QByteArray gateway = choices.bytes(4);
    const int maskBits = choices.number(1, 32);
    QByteArray mask(4, '\0');
    for (int bit = 0; bit < maskBits; ++bit)
        mask[bit / 8] = static_cast<char>(mask[bit / 8] | (0x80 >> (bit % 8)));
    setup.ip = QString::fromStdString(dotted(ip));
    setup.gateway = QString::fromStdString(dotted(gateway));
    setup.subnetMask = QString::fromStdString(dotted(mask));
    setup.username = typed(choices, usr_frame::longestCredential);
    setup.password = typed(choices, usr_frame::longestCredential);
    const QString name = typed(choices, usr_frame::longestName);
    setup.nameHex = usr_frame::textField(name, usr_frame::nameSize);
    setup.newUsername = typed(choices, usr_frame::longestCredential);
    setup.newPassword = typed(choices, usr_frame::longestCredential);
    const int unknown = choices.number(0, 7); // which addresses could not be read
    for (int address = 0; address < 3; ++address) {
        QString *const addresses[] = {&setup.ip, &setup.gateway, &setup.subnetMask};
        if ((unknown & (1 << address)) != 0)
            *addresses[address] = QStringLiteral("-1");
    }

    const QString login = usr_frame::loginRequest(setup.mac, setup.username, setup.password);
    const QString commit = usr_frame::commitRequest(setup.mac, setup.username, setup.password);
    const QString write = usr_frame::setupRequest(setup);
    usr_frame::Setup other = setup;
    other.password = another(setup.password);
    other.newPassword = another(setup.newPassword);
    require(recorded(login) ==
                recorded(usr_frame::loginRequest(setup.mac, setup.username, other.password)),
            "the record of a login tells nothing of its password", login.toStdString());
    require(recorded(commit) ==
                recorded(usr_frame::commitRequest(setup.mac, setup.username, other.password)),
            "the record of a commit tells nothing of its password", commit.toStdString());
    require(recorded(write) == recorded(usr_frame::setupRequest(other)),
            "the record of a setup tells nothing of its passwords", write.toStdString());

    const bool allFit = hasMac && unknown == 0 && fits(setup.username, 6) &&
                        fits(setup.password, 6) && fits(name, 16) && fits(setup.newUsername, 6) &&
                        fits(setup.newPassword, 6);
    if (!allFit)
        return;
    requireCredentials(requireRead(login, Kind::Login), macBytes, setup.username, setup.password);
    requireCredentials(requireRead(commit, Kind::Commit), macBytes, setup.username, setup.password);
    const auto front = static_cast<unsigned char>(ip[0]);
    if (setup.ipAllocation == QLatin1String("80") && (front == 0 || front >= 224))
        return; // no address of a module
    const ModuleRequest read = requireRead(write, Kind::Setup);
    requireCredentials(read, macBytes, setup.username, setup.password);
    require(read.setup.dhcp == (setup.ipAllocation == QLatin1String("00")),
            "the module reads the allocation");
    require(toText(read.setup.address) == dotted(ip) &&
                toText(read.setup.gateway) == dotted(gateway) &&
                toText(read.setup.subnetMask) == dotted(mask),
            "the module reads the addresses", write.toStdString());
    const std::string nameBytes = name.toStdString();
    require(read.setup.name == nameBytes.substr(0, nameBytes.find('\0')),
            "the module reads the name", read.setup.name);
    require(read.setup.username == fieldOf(setup.newUsername) &&
                read.setup.password == fieldOf(setup.newPassword),
            "the module reads the new credentials");
}

/// Datagrams of any kind, each behind a byte with its size.
void requireModuleStands(Choices &choices)
{
    ModuleModel module;
    for (int datagrams = 0; datagrams < 8 && !choices.isAtEnd(); ++datagrams) {
        const QByteArray datagram = choices.bytes(choices.byte());
        const ModuleOutcome outcome = module.receive(datagram);
        module.finishRestart();
        require(outcome.rejection.empty() || outcome.answers.size() < 2,
                "a rejected request has at most a refusal for an answer");
        require(usr_frame::requestForRecord(datagram).size() == datagram.size() &&
                    usr_frame::replyForRecord(datagram).size() == datagram.size(),
                "a record has the size of its frame");
        const auto decoded = decodeRequest(datagram);
        const auto *request = std::get_if<ModuleRequest>(&decoded);
        if (request == nullptr || request->kind == Kind::Search || request->password.empty())
            continue;
        const QByteArray shown = usr_frame::requestForRecord(datagram);
        require(shown.mid(15, 6) == QByteArray("******"),
                "the record of a request hides its password", datagram.toHex().toStdString());
    }
}
} // namespace

/// The first byte chooses between requests that the utility makes of the fields behind it, and
/// datagrams of any kind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Choices choices(data, size);
    if (choices.flag())
        requireModuleStands(choices);
    else
        requireRequests(choices);
    requireRead(usr_frame::searchRequest(), Kind::Search);
    return 0;
}
