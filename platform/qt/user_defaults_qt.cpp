// The store in QSettings' INI file: ~/.config/velmora/hardware-detector.conf.
#include "platform/user_defaults.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>
#include <cerrno>
#include <chrono>
#include <thread>

namespace platform {

namespace {

// How long to wait for another process that is just at the file; after that, both are.
constexpr std::chrono::seconds patience{3};
constexpr std::chrono::milliseconds pause{1};

QString folder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + QStringLiteral("/velmora");
}

// Keeps other processes of the program out while it lives. The system gives the lock back when its holder dies.
class FolderLock {
  public:
    FolderLock() {
        QDir().mkpath(folder());
        descriptor_ = open(QFile::encodeName(folder()).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const auto deadline = std::chrono::steady_clock::now() + patience;
        while (flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK &&
               std::chrono::steady_clock::now() < deadline) {
            std::this_thread::sleep_for(pause);
        }
    }
    ~FolderLock() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

  private:
    int descriptor_ = -1;  // Stays so where the folder cannot be made; then there is nothing to keep anybody out of.
};

// The file, as long as this lives: nobody else reads or writes it meanwhile. The toolkit by itself only keeps two
// writers apart, and a reader that is overtaken by one takes what it has read for the newest for ever.
class Store {
  public:
    // A QSettings is not for two threads, so each Store has one of its own; all share what is in memory. One more stays
    // for good, and with it whatever could not be written to the disk.
    Store() {
        static const auto* const keepsTheMemory = new QSettings(fileName(), QSettings::IniFormat);
        static_cast<void>(keepsTheMemory);
    }

    [[nodiscard]] std::optional<std::string> string(const std::string& key) {
        settings_.sync();  // Takes in what another process has stored meanwhile.
        const QVariant value = settings_.value(QString::fromStdString(key));
        // A comma that nobody quoted makes a list of what was meant as one text.
        if (value.typeId() == QMetaType::QStringList)
            return value.toStringList().join(QStringLiteral(", ")).toStdString();
        if (!value.canConvert<QString>()) return std::nullopt;
        return value.toString().toStdString();
    }

    void setString(const std::string& key, const std::string& value) {
        keepToTheOwner();
        settings_.setValue(QString::fromStdString(key), QString::fromStdString(value));
        settings_.sync();
    }

  private:
    // The id in it is nobody else's business. Whoever writes the file keeps the permissions it has.
    static void keepToTheOwner() {
        const int file =
            open(QFile::encodeName(fileName()).constData(), O_WRONLY | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (file < 0) return;
        fchmod(file, S_IRUSR | S_IWUSR);
        close(file);
    }

    static QString fileName() { return folder() + QStringLiteral("/hardware-detector.conf"); }

    FolderLock lock_;
    QSettings settings_{fileName(), QSettings::IniFormat};
};

}  // namespace

std::optional<std::string> userDefaults::string(const std::string& key) { return Store().string(key); }

void userDefaults::setString(const std::string& key, const std::string& value) { Store().setString(key, value); }

void userDefaults::setBool(const std::string& key, bool value) { setString(key, value ? "1" : "0"); }

std::string userDefaults::setStringIfAbsent(const std::string& key, const std::string& value) {
    Store store;
    if (const std::optional<std::string> present = store.string(key)) return *present;
    store.setString(key, value);
    return value;
}

}  // namespace platform
