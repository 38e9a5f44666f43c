// What the viewers' Export and Import buttons do once the user has chosen a file or folder: the
// exchange itself and the message boxes that report it, free of any toolkit so that the dialogs
// and veltrino-cli run the very same steps.
//
// Imports of lookup tables go through a scratch object first: the folder is read into it, its
// signature and the size of its content laid out without gaps are compared with the shown tag's
// signature and size as loaded, and only then is the folder read a second time into the shown
// tag. A folder that fails to read or does not match therefore leaves the
// shown tag untouched.
//
// Each returns 0 when the tag was exported or changed (an import's caller then marks the tag
// modified and shows it again), or the failing step's status after its box was shown.
#pragma once

#include "document/presenter.h"
#include "profile/status.h"

#include <string>

class iccCurveElement;
class iccMftLut;
class iccMlutType;

[[nodiscard]] icStatus runLutExport(Presenter& presenter, const iccMftLut& tag,
                                    const std::string& folder);
// -1001 when the folder holds a table of another signature or size than the tag.
[[nodiscard]] icStatus runLutImport(Presenter& presenter, iccMftLut& tag,
                                    const std::string& folder);

[[nodiscard]] icStatus runMlutExport(Presenter& presenter, const iccMlutType& tag,
                                     const std::string& folder);
// -1001 when the folder holds a table of another signature or size than the tag.
[[nodiscard]] icStatus runMlutImport(Presenter& presenter, iccMlutType& tag,
                                     const std::string& folder);

// The curve viewer's Export: the curve text file of the curve shown; no box on success.
[[nodiscard]] icStatus runCurveExport(Presenter& presenter, const iccCurveElement& curve,
                                      const std::string& path);
// The curve viewer's Import: the file is read into a scratch curve of the shown curve's type to
// validate it, then into the shown curve. The plot is the viewer's to redraw.
[[nodiscard]] icStatus runCurveImport(Presenter& presenter, iccCurveElement& curve,
                                      const std::string& path);
