// The store in QSettings' INI file: ~/.config/velmora/hardware-detector.conf.
#include "platform/user_defaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

namespace platform {

namespace {

QString folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/velmora");
}

// One for the life of the process: it holds whatever could not be written to the disk.
QSettings& settings() {
    static QSettings theSettings(folder() + QStringLiteral("/hardware-detector.conf"), QSettings::IniFormat);
    return theSettings;
}

// The id in the file is nobody else's business. The toolkit keeps the permissions that the file has.
void keepToTheOwner() {
    QDir().mkpath(folder());
    const int file =
        open(QFile::encodeName(settings().fileName()).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0) return;
    fchmod(file, S_IRUSR | S_IWUSR);
    close(file);
}

}  // namespace

std::optional<std::string> userDefaults::string(const std::string& key) {
    settings().sync();  // Takes in what another process has stored meanwhile.
    const QVariant value = settings().value(QString::fromStdString(key));
    // Values have no types in the file, but for the marked ones of the toolkit and for lists.
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    return value.toString().toStdString();
}

void userDefaults::setString(const std::string& key, const std::string& value) {
    keepToTheOwner();
    settings().setValue(QString::fromStdString(key), QString::fromStdString(value));
    settings().sync();
}

void userDefaults::setBool(const std::string& key, bool value) { setString(key, value ? "1" : "0"); }

}  // namespace platform
