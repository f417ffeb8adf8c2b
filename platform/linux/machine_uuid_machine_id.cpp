// The machine's UUID, made from /etc/machine-id by a keyed hash, like sd_id128_get_machine_app_specific(3): the
// identifier itself is confidential and must not leave the machine (machine-id(5)).
#include "platform/machine_uuid.h"

#include <QFile>
#include <QMessageAuthenticationCode>
#include <QUuid>

namespace platform {

namespace {

constexpr qint64 machineIdLength = 32;  // Hexadecimal digits in lower case, then a line feed.

// Random, for this program alone. Another value would give every machine another UUID.
constexpr QUuid applicationId{0x7c1f6d0b, 0x52e4, 0x4a38, 0x9e, 0x0d, 0x3b, 0x6a, 0x91, 0xc8, 0xf2, 0x57};

// Absent for anything else: "uninitialized", as during a system's first start, or all zeros, which many machines would
// share.
std::optional<QByteArray> machineId() {
    QFile file(QStringLiteral("/etc/machine-id"));
    if (!file.open(QIODevice::ReadOnly)) return std::nullopt;
    QByteArray text = file.read(machineIdLength + 2);
    if (text.endsWith('\n')) text.chop(1);
    const QByteArray identifier = QByteArray::fromHex(text);
    if (text.size() != machineIdLength || identifier.toHex() != text.toLower()) return std::nullopt;
    if (identifier.count('\0') == identifier.size()) return std::nullopt;
    return identifier;
}

}  // namespace

std::optional<std::string> platformUuid() {
    const std::optional<QByteArray> key = machineId();
    if (!key) return std::nullopt;
    QByteArray bytes =
        QMessageAuthenticationCode::hash(applicationId.toRfc4122(), *key, QCryptographicHash::Sha256).left(16);
    bytes[6] = static_cast<char>((bytes[6] & 0x0F) | 0x40);  // Version 4 and the RFC's variant, as UUIDs are marked.
    bytes[8] = static_cast<char>((bytes[8] & 0x3F) | 0x80);
    return QUuid::fromRfc4122(bytes).toString(QUuid::WithoutBraces).toUpper().toStdString();
}

}  // namespace platform
