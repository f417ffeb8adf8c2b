// The store in QSettings' INI file: ~/.config/velmora/hardware-detector.conf.
#include "platform/user_defaults.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>
#include <map>
#include <memory>

namespace platform {

namespace {

QString folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/velmora");
}

// Null when there is something else than a regular file of this user's own in the file's place: reading a pipe would
// never end, and writing by a link would change a file that is none of ours. A file that others could read is closed to
// them at once, because the id in it is nobody else's business.
std::unique_ptr<QSettings> openSettings() {
    const QString name = folder() + QStringLiteral("/hardware-detector.conf");
    const QByteArray path = QFile::encodeName(name);
    struct stat status {};
    if (lstat(path.constData(), &status) == 0) {
        if (!S_ISREG(status.st_mode) || status.st_uid != geteuid()) return nullptr;
        chmod(path.constData(), S_IRUSR | S_IWUSR);
    }
    return std::make_unique<QSettings>(name, QSettings::IniFormat);
}

// One for the life of the process: it holds whatever could not be written to the disk.
QSettings* settings() {
    static const std::unique_ptr<QSettings> theSettings = openSettings();
    return theSettings.get();
}

// What is set while there is no store.
std::map<std::string, std::string>& memory() {
    static std::map<std::string, std::string> values;
    return values;
}

// The toolkit would make folder and file with the permissions that everything new gets.
void makeFileForItsOwner() {
    const QFileInfo file(settings()->fileName());
    QDir().mkpath(QFileInfo(file.path()).path());
    mkdir(QFile::encodeName(file.path()).constData(), S_IRWXU);
    const int made = open(QFile::encodeName(file.filePath()).constData(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC,
                          S_IRUSR | S_IWUSR);
    if (made >= 0) close(made);
}

}  // namespace

std::optional<std::string> userDefaults::string(const std::string& key) {
    if (settings() == nullptr) {
        const auto found = memory().find(key);
        return found == memory().end() ? std::nullopt : std::optional(found->second);
    }
    settings()->sync();  // Takes in what another process has stored meanwhile.
    const QVariant value = settings()->value(QString::fromStdString(key));
    // Values have no types in the file, but for the marked ones of the toolkit and for lists.
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    return value.toString().toStdString();
}

void userDefaults::setString(const std::string& key, const std::string& value) {
    if (settings() == nullptr) {
        memory()[key] = value;
        return;
    }
    makeFileForItsOwner();
    settings()->setValue(QString::fromStdString(key), QString::fromStdString(value));
    settings()->sync();
}

void userDefaults::setBool(const std::string& key, bool value) { setString(key, value ? "1" : "0"); }

}  // namespace platform
