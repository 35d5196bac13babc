#pragma once

#include <QDialog>

class QMovie;

namespace Ui {
class loadDialog;
}

// Busy indicator shown over the SD card browser during long transfers. The
// animation starts with the dialog and runs for as long as it exists.
class loadDialog : public QDialog
{
    Q_OBJECT

public:
    explicit loadDialog(QWidget *parent = nullptr);
    ~loadDialog() override;

private:
    Ui::loadDialog *ui;
    QMovie *movie;
};
