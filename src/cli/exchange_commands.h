// veltrino-cli export and import: a tag's exchange folder or curve text file, written and read
// back exactly as the viewers' Export and Import buttons do.
#pragma once

#include <string>

// Writes the tag (a lut8, lut16, lutAToB or lutBToA table as a folder, a 'curv' or 'para' curve
// as a curve text file) to PATH and prints the viewer's message. Returns the exit status: 0, 1
// (the profile, the tag or the export failed), or 2 (TAG is neither an index nor a signature).
int runExportCommand(const std::string& profilePath, const std::string& tagText,
                     const std::string& path);

// Runs the viewer's import of PATH into the tag, stores the changed tag in the profile as the
// window does when the viewer closes with OK, and saves the profile to OUTPUT as "Save As..."
// does. Exit status as for runExportCommand; nothing is written when the import fails.
int runImportCommand(const std::string& profilePath, const std::string& tagText,
                     const std::string& path, const std::string& outputPath);
