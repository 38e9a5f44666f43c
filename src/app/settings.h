// The per-user settings of the desktop program: the LUT data folder in the platform's store,
// and where the file-based folder record lives.
#pragma once

#include "document/prompt_service.h"

#include <QSettings>
#include <QString>

inline constexpr char kOrganisationName[] = "Tintwerk";
inline constexpr char kApplicationName[] = "Veltrino";
inline constexpr char kSettingsGroup[] = "File";
inline constexpr char kDataDirKey[] = "Data_Dir";

// "c:\icclut" on Windows; elsewhere the folder "icclut" in the user's home folder.
QString defaultDataDir();

// The stored data folder, cut to 260 characters; the default when it is missing or empty.
QString loadDataDir(QSettings& settings);
void saveDataDir(QSettings& settings, const QString& folder);

// "veltrino.ini" in the per-user configuration folder, or in the current folder when that
// cannot be had.
QString folderRecordPath();
// The platform's folder of installed colour profiles.
QString systemColorFolder();
// The folder record through its path: reading never fails, writing reports its failure.
QString readFolderRecord();
[[nodiscard]] icStatus writeFolderRecord(const QString& folder, Presenter& presenter);
