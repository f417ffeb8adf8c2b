// The store in QSettings' INI file: ~/.config/velmora/hardware-detector.conf.
#include "platform/user_defaults.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSettings>
#include <QVariant>
#include <chrono>

namespace platform {

namespace {

// How long to wait for another process that is just storing its own first value; after that, both go on.
constexpr std::chrono::milliseconds patience{2000};

class Store {
  public:
    Store() {
        settings_.setFallbacksEnabled(false);  // Other programs' and the system's files are not ours to read.
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
        settings_.setValue(QString::fromStdString(key), QString::fromStdString(value));
        settings_.sync();
        // The id in it is nobody else's business.
        QFile::setPermissions(settings_.fileName(), QFile::ReadOwner | QFile::WriteOwner);
    }

    [[nodiscard]] QString fileName() const { return settings_.fileName(); }

  private:
    QSettings settings_{QSettings::NativeFormat, QSettings::UserScope, QStringLiteral("velmora"),
                        QStringLiteral("hardware-detector")};
};

// Each call has a QSettings of its own, because one of them is not for two threads; all share what is in memory. The
// first one stays for good, and with it whatever could not be written to the disk.
Store openStore() {
    static auto* const keepsTheMemory = new Store;
    static_cast<void>(keepsTheMemory);
    return {};
}

}  // namespace

std::optional<std::string> userDefaults::string(const std::string& key) { return openStore().string(key); }

void userDefaults::setString(const std::string& key, const std::string& value) { openStore().setString(key, value); }

void userDefaults::setBool(const std::string& key, bool value) { setString(key, value ? "1" : "0"); }

std::string userDefaults::setStringIfAbsent(const std::string& key, const std::string& value) {
    Store store = openStore();
    const QString lockFileName = store.fileName() + QStringLiteral(".first-value.lock");
    QDir().mkpath(QFileInfo(lockFileName).path());
    QLockFile lock(lockFileName);
    // A folder that cannot be written has no lock either; then there is nothing to keep two processes apart for.
    static_cast<void>(lock.tryLock(patience));
    if (const std::optional<std::string> present = store.string(key)) return *present;
    store.setString(key, value);
    return value;
}

}  // namespace platform
