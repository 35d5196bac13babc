#include "app/loaddialog.h"

#include "ui_loaddialog.h"

#include <QMovie>

loadDialog::loadDialog(QWidget *parent) : QDialog(parent), ui(new Ui::loadDialog)
{
    ui->setupUi(this);
    setWindowOpacity(0.6);
    setWindowFlags(Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint | Qt::CustomizeWindowHint);
    setContentsMargins(0, 0, 0, 0);
    setAutoFillBackground(true);
    movie = new QMovie(QStringLiteral(":/new/prefix1/images/loading.gif"), QByteArray(), this);
    ui->loadlabel->setMovie(movie);
    movie->start();
}

loadDialog::~loadDialog()
{
    delete ui;
}
