// "Import/Export CLUT": the folder a lookup-table viewer exports to or imports from.
#pragma once

#include <QDialog>

#include <cstdint>
#include <string>

class QLabel;
class QLineEdit;

class CDumpCLUT : public QDialog {
    Q_OBJECT
public:
    // `mode` 2 lists the lut8/lut16 files, 4 and above the lutAToB/lutBToA files. The folder box
    // starts with the shared data folder.
    explicit CDumpCLUT(std::uint32_t mode, QWidget* parent = nullptr);

    // The folder as typed, in the platform's encoding; meaningful after OK.
    std::string folder() const;

    void accept() override;

private:
    void setLabels();

    std::uint32_t mode_;
    QLineEdit* folderEdit_;
    QLabel* firstCurveRow_;
    QLabel* secondCurveRow_;
    QLabel* mCurveRow_;
    QLabel* header_;
    QLabel* firstCurve_;
    QLabel* clut_;
    QLabel* matrix_;
    QLabel* secondCurve_;
    QLabel* mCurve_;
};
