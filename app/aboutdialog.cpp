#include "app/aboutdialog.h"

#include "ui_aboutdialog.h"

aboutDialog::aboutDialog(QWidget *parent) : QDialog(parent), ui(new Ui::aboutDialog)
{
    ui->setupUi(this);
    // The version comes from the build; the form holds "%1" so translations outlive releases.
    ui->label_2->setText(ui->label_2->text().arg(QStringLiteral(VELTOR_VERSION)));
    setWindowIcon(QIcon(QStringLiteral(":images/about.ico")));
    ui->aboutbtn->setStyleSheet(QStringLiteral(
        "QPushButton{ font-family:'Microsoft YaHei';height:25px;font-size:12px;color:#fff;"
        "background-color:#ffa03e;border-radius:3px;border:none;font-weight:bold;}"));
}

aboutDialog::~aboutDialog()
{
    delete ui;
}

void aboutDialog::on_aboutbtn_clicked()
{
    close();
}
