// The machine's UUID, made from /etc/machine-id.
//
// That identifier is confidential and must not leave the machine as it stands (machine-id(5)). What is handed out is
// made of it by a keyed hash, in the way of sd_id128_get_machine_app_specific(3): stable, ours alone, and no way back.
#include "platform/machine_uuid.h"

#include <QFile>
#include <QMessageAuthenticationCode>
#include <QUuid>

namespace platform {

namespace {

constexpr qint64 machineIdLength = 32;  // Hexadecimal digits in lower case, then a line feed.

// Drawn at random once, for this program. Another value would make every machine a new one.
constexpr QUuid applicationId{0x7c1f6d0b, 0x52e4, 0x4a38, 0x9e, 0x0d, 0x3b, 0x6a, 0x91, 0xc8, 0xf2, 0x57};

// Absent for whatever is no identifier: "uninitialized", which a system says while it starts for the first time, or
// noughts alone, which would be many machines' at once.
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
