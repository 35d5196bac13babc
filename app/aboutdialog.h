#pragma once

#include <QDialog>

namespace Ui {
class aboutDialog;
}

// The About box: product name, version, ownership and feedback address.
class aboutDialog : public QDialog
{
    Q_OBJECT

public:
    explicit aboutDialog(QWidget *parent = nullptr);
    ~aboutDialog() override;

private slots:
    void on_aboutbtn_clicked();

private:
    Ui::aboutDialog *ui;
};
