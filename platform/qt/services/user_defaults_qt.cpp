// The store in QSettings' INI file: ~/.config/velmora/hardware-detector.conf. The toolkit waits half a minute at most
// for another process that is storing.
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

namespace platform {

namespace {

// False if something other than this user's file (or folder) is there. Otherwise takes away others' permissions.
bool isOursOrMissing(const QString& name, mode_t type, mode_t permissions) {
    const QByteArray path = QFile::encodeName(name);
    struct stat status {};
    if (lstat(path.constData(), &status) != 0) return true;
    if ((status.st_mode & S_IFMT) != type || status.st_uid != geteuid()) return false;
    chmod(path.constData(), permissions);
    return true;
}

// Not the file when something else is in its place or in that of the toolkit's lock: reading a pipe would never end,
// writing through a link would change a file that isn't ours, and the toolkit would wait for a lock that is a folder.
// Nothing can be stored under the name given instead, so values last as long as the process.
QString usableFile() {
    const QString folder =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/velmora");
    const QString file = folder + QStringLiteral("/hardware-detector.conf");
    isOursOrMissing(folder, S_IFDIR, S_IRWXU);
    const bool isUsable = isOursOrMissing(file, S_IFREG, S_IRUSR | S_IWUSR) &&
                          isOursOrMissing(file + QStringLiteral(".lock"), S_IFREG, S_IRUSR | S_IWUSR);
    return isUsable ? file : QStringLiteral("/dev/null/nowhere");
}

// One for the life of the process: it holds whatever could not be written to the disk.
QSettings& settings() {
    static QSettings theSettings(usableFile(), QSettings::IniFormat);
    return theSettings;
}

// The toolkit would make folder and file readable for everybody.
void makeFileForItsOwner() {
    const QFileInfo file(settings().fileName());
    QDir().mkpath(QFileInfo(file.path()).path());
    mkdir(QFile::encodeName(file.path()).constData(), S_IRWXU);
    const int made = open(QFile::encodeName(file.filePath()).constData(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_CLOEXEC,
                          S_IRUSR | S_IWUSR);
    if (made >= 0) close(made);
}

}  // namespace

std::optional<std::string> userDefaults::string(const std::string& key) {
    settings().sync();  // Reads what another process has stored meanwhile.
    const QVariant value = settings().value(QString::fromStdString(key));
    // Only lists and values that the toolkit marked have another type in the file.
    if (value.typeId() != QMetaType::QString) return std::nullopt;
    return value.toString().toStdString();
}

void userDefaults::setString(const std::string& key, const std::string& value) {
    makeFileForItsOwner();
    settings().setValue(QString::fromStdString(key), QString::fromStdString(value));
    settings().sync();
}

void userDefaults::setBool(const std::string& key, bool value) { setString(key, value ? "1" : "0"); }

}  // namespace platform
