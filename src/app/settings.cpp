#include "app/settings.h"

#include "document/settings_model.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace {

// Longer configuration folders are refused, so that the whole record path stays short.
constexpr qsizetype kMaxRecordFolderLength = 243;

std::string localPath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace

QString defaultDataDir() {
#ifdef Q_OS_WIN
    return QStringLiteral("c:\\icclut");
#else
    return QDir(QDir::homePath()).filePath(QStringLiteral("icclut"));
#endif
}

QString loadDataDir(QSettings& settings) {
    settings.beginGroup(QLatin1String(kSettingsGroup));
    const QString stored = settings.value(QLatin1String(kDataDirKey)).toString();
    settings.endGroup();
    if (stored.isEmpty())
        return defaultDataDir();
    return QString::fromStdString(cutToCharacters(stored.toStdString(), kMaxDataDirLength));
}

void saveDataDir(QSettings& settings, const QString& folder) {
    settings.beginGroup(QLatin1String(kSettingsGroup));
    settings.setValue(QLatin1String(kDataDirKey), folder);
    settings.endGroup();
}

QString folderRecordPath() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    if (folder.isEmpty() || folder.size() > kMaxRecordFolderLength || !QDir().mkpath(folder))
        return QDir::current().filePath(QStringLiteral("veltrino.ini"));
    return QDir(folder).filePath(QStringLiteral("veltrino.ini"));
}

QString systemColorFolder() {
#if defined(Q_OS_WIN)
    const QString root = qEnvironmentVariable("SystemRoot");
    return root.isEmpty() ? QStringLiteral("c:") : root + QStringLiteral("\\System32\\COLOR");
#elif defined(Q_OS_MACOS)
    return QStringLiteral("/Library/ColorSync/Profiles");
#else
    return QStringLiteral("/usr/share/color/icc");
#endif
}

QString readFolderRecord() {
    return QFile::decodeName(
        readFolderRecord(localPath(folderRecordPath()), localPath(systemColorFolder())).c_str());
}

icStatus writeFolderRecord(const QString& folder, Presenter& presenter) {
    return writeFolderRecord(localPath(folderRecordPath()), localPath(folder), presenter);
}
