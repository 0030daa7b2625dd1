#include "cli/device.h"
#include "cli/failure.h"
#include "cli/file_names.h"
#include "cli/output.h"
#include "property.h"

#include <QFileInfo>
#include <QSet>

namespace {
void requireVisible(const UsageError &error)
{
    require(!error.lines().isEmpty(), "a refusal says why");
    for (const QString &line : error.lines())
        require(!hasControlCharacter(visible(line)), "a refusal obeys nobody's control characters",
                line.toStdString());
}

void requireDevice(const Device &device)
{
    require(!device.name.isEmpty(), "every device has a name");
    require(!hasControlCharacter(device.text), "no device has a control character in it");
    const Device again = deviceFrom(device.text);
    require(again.road == device.road && again.port == device.port &&
                again.address == device.address && again.udpPort == device.udpPort &&
                again.module == device.module,
            "a device is what its text says", device.text.toStdString());
    switch (device.road) {
    case Device::Road::Serial:
        return require(!device.port.isEmpty(), "a serial device has a port");
    case Device::Road::Udp:
        return require(!device.address.isNull() && device.udpPort != 0,
                       "a UDP device has an address and a port");
    case Device::Road::Module:
        return require(!device.module.isEmpty(), "a module has a name");
    }
}

void requireInFolder(const std::vector<Device> &devices)
{
    const QStringList files = filesFor(QStringLiteral("backup/{name}.txt"), devices);
    QSet<QString> names;
    for (const QString &file : files) {
        require(QFileInfo(file).path() == QLatin1String("backup"), "no file is beyond the folder",
                file.toStdString());
        require(!hasControlCharacter(file), "no file has a control character in its name",
                file.toStdString());
        names.insert(file.toCaseFolded());
    }
    require(names.size() == files.size(), "each device has a file of its own");
}
} // namespace

/// The bytes are a list of devices.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray list(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    try {
        const std::vector<Device> devices = devicesFrom(list, QStringLiteral("floor.txt"));
        for (const Device &device : devices)
            requireDevice(device);
        requireDistinct(devices);
        requireInFolder(devices);
    } catch (const UsageError &error) {
        requireVisible(error);
    }
    return 0;
}
