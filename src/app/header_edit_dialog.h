// "Modify...": the editor of the profile's in-memory header.
#pragma once

#include "app/header_edit_model.h"
#include "document/presenter.h"

#include <QDialog>

#include <array>

class QComboBox;
class QLineEdit;

class CEditHeaderDlg : public QDialog {
    Q_OBJECT
public:
    // Edits `header` in place on "OK"; "Cancel" leaves it alone. The version warnings go to
    // `presenter`.
    CEditHeaderDlg(icHeader& header, Presenter& presenter, QWidget* parent = nullptr);

    void accept() override;

private:
    // What the dialog holds now, as the model takes it; `shown` gives the fields it cannot edit.
    HeaderEditFields fields(const HeaderEditFields& shown) const;

    icHeader& header_;
    Presenter& presenter_;
    QLineEdit *cmmType_, *version_, *date_, *time_, *platform_, *manufacturer_, *model_, *creator_;
    QComboBox *embedded_, *independent_, *intent_;
    std::array<QComboBox*, 4> attributes_{};
};
