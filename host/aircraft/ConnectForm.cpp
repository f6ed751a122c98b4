#include "host/aircraft/ConnectForm.h"
#include "host/tasks/LimitedNumber.h"

#include <AxTelemetry/link/AxSerialLink.h>

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>

namespace {
constexpr double simulatorSpeeds[] = {1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0};
constexpr int usualBauds[] = {9600, 38400, 57600, 115200, 230400, 460800, 921600};
constexpr qint64 mostKeyBytes = 1024;

QSpinBox* PortBox()
{
    auto* box = new QSpinBox;
    box->setRange(1, 65535);
    return box;
}

QFormLayout* FormOn(QWidget* page)
{
    auto* form = new QFormLayout(page);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    return form;
}
} // namespace

ConnectForm::ConnectForm(QWidget* parent)
    : QWidget(parent), kind(new QComboBox), pages(new QStackedWidget), speed(new QComboBox),
      windSpeed(new LimitedNumber), windFrom(new LimitedNumber), udpPort(PortBox()), tcpHost(new QLineEdit),
      tcpPort(PortBox()), serialPort(new QComboBox), baud(new QComboBox), file(new QLineEdit),
      keyText(new QLineEdit), keyState(new QLabel)
{
    kind->setObjectName(QStringLiteral("LinkKind"));
    kind->setAccessibleName(tr("Connection"));
    kind->addItems({tr("Simulator"), tr("UDP"), tr("TCP"), tr("Serial port"), tr("Recorded flight")});
    for (QWidget* page : {BuildSimulator(), BuildUdp(), BuildTcp(), BuildSerial(), BuildFile()})
        pages->addWidget(page);
    keyRow = BuildKey();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(kind);
    column->addWidget(pages);
    column->addWidget(keyRow);
    connect(kind, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        pages->setCurrentIndex(index);
        keyRow->setVisible(index != static_cast<int>(LinkSettings::Kind::Simulator));
        emit Changed();
    });
    keyRow->hide();
    for (QSpinBox* number : {udpPort, tcpPort})
        connect(number, QOverload<int>::of(&QSpinBox::valueChanged), this, &ConnectForm::Changed);
    for (QLineEdit* line : {tcpHost, file})
        connect(line, &QLineEdit::textChanged, this, &ConnectForm::Changed);
    for (QComboBox* box : {serialPort, baud})
        connect(box, &QComboBox::currentTextChanged, this, &ConnectForm::Changed);
    SetSettings({});
}

QWidget* ConnectForm::BuildSimulator()
{
    auto* page = new QWidget;
    QFormLayout* form = FormOn(page);
    for (const double times : simulatorSpeeds)
        speed->addItem(tr("%1 times").arg(times), times);
    speed->setObjectName(QStringLiteral("SimulatorSpeed"));
    windSpeed->setRange(0.0, 30.0);
    windSpeed->setDecimals(1);
    windSpeed->setSuffix(QStringLiteral(" m/s"));
    windFrom->setRange(0.0, 359.0);
    windFrom->setDecimals(0);
    windFrom->setSuffix(QStringLiteral("\u00b0"));
    windFrom->setToolTip(tr("Where the wind blows from, clockwise from north"));
    auto* row = new QHBoxLayout;
    row->addWidget(windSpeed);
    row->addWidget(new QLabel(tr("from")));
    row->addWidget(windFrom);
    form->addRow(tr("Speed"), speed);
    form->addRow(tr("Wind"), row);
    connect(speed, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this] { emit SpeedChanged(speed->currentData().toDouble()); });
    return page;
}

QWidget* ConnectForm::BuildUdp()
{
    auto* page = new QWidget;
    udpPort->setToolTip(tr("The program listens on this port and answers to whom it hears"));
    FormOn(page)->addRow(tr("Port"), udpPort);
    return page;
}

QWidget* ConnectForm::BuildTcp()
{
    auto* page = new QWidget;
    QFormLayout* form = FormOn(page);
    form->addRow(tr("Host"), tcpHost);
    form->addRow(tr("Port"), tcpPort);
    return page;
}

QWidget* ConnectForm::BuildSerial()
{
    auto* page = new QWidget;
    QFormLayout* form = FormOn(page);
    serialPort->setEditable(true);
    auto* again = new QToolButton;
    again->setText(QStringLiteral("\u21bb"));
    again->setToolTip(tr("Look for ports again"));
    connect(again, &QToolButton::clicked, this, &ConnectForm::ListPorts);
    auto* row = new QHBoxLayout;
    row->addWidget(serialPort, 1);
    row->addWidget(again);
    for (const int one : usualBauds)
        baud->addItem(QString::number(one));
    baud->setEditable(true);
    baud->setValidator(new QIntValidator(1200, 4000000, baud));
    baud->setToolTip(tr("Bits a second"));
    form->addRow(tr("Port"), row);
    form->addRow(tr("Baud"), baud);
    ListPorts();
    return page;
}

QWidget* ConnectForm::BuildFile()
{
    auto* page = new QWidget;
    auto* choose = new QToolButton;
    choose->setText(QStringLiteral("..."));
    choose->setToolTip(tr("Choose a .tlog or .csv file"));
    connect(choose, &QToolButton::clicked, this, &ConnectForm::ChooseFile);
    file->setObjectName(QStringLiteral("FlightFile"));
    auto* row = new QHBoxLayout;
    row->addWidget(file, 1);
    row->addWidget(choose);
    FormOn(page)->addRow(tr("File"), row);
    return page;
}

QWidget* ConnectForm::BuildKey()
{
    auto* page = new QWidget;
    QFormLayout* form = FormOn(page);
    keyText->setObjectName(QStringLiteral("SigningKey"));
    keyText->setEchoMode(QLineEdit::Password);
    keyText->setPlaceholderText(tr("64 hexadecimal digits; empty: none"));
    keyText->setToolTip(tr("With a key, messages that it does not sign are refused, and what is sent is "
                           "signed. The key is not kept: it has to be given again after a start."));
    auto* fromFile = new QToolButton;
    fromFile->setText(QStringLiteral("..."));
    fromFile->setToolTip(tr("Read the key from a file"));
    connect(fromFile, &QToolButton::clicked, this, &ConnectForm::ReadKeyFile);
    connect(keyText, &QLineEdit::textChanged, this,
            [this](const QString& text) { TakeKey(text.toLatin1()); });
    auto* row = new QHBoxLayout;
    row->addWidget(keyText, 1);
    row->addWidget(fromFile);
    form->addRow(tr("Signing key"), row);
    form->addRow(QString(), keyState);
    TakeKey({});
    return page;
}

void ConnectForm::TakeKey(const QByteArray& contents)
{
    const std::optional<QByteArray> read = ParseSigningKey(contents);
    key = read.value_or(QByteArray());
    isKeyBad = !read && !contents.trimmed().isEmpty();
    if (!read && !isKeyBad)
        keyState->setText(tr("No key: signed messages are refused."));
    else
        keyState->setText(read ? tr("A key of 32 bytes, in this run only.")
                               : tr("This is no key of 32 bytes: nothing is connected with it."));
    emit Changed();
}

void ConnectForm::ReadKeyFile()
{
    const QString path = QFileDialog::getOpenFileName(window(), tr("Signing key"));
    if (path.isEmpty())
        return;
    QFile from(path);
    if (!from.open(QIODevice::ReadOnly))
        return emit Told(tr("%1 cannot be read: %2").arg(path, from.errorString()));
    const std::optional<QByteArray> read = ParseSigningKey(from.read(mostKeyBytes));
    if (!read)
        return emit Told(tr("%1 has no key in it: 32 bytes or 64 hexadecimal digits.").arg(path));
    keyText->setText(QString::fromLatin1(read->toHex()));
}

void ConnectForm::ListPorts()
{
    const QString chosen = serialPort->currentText();
    serialPort->clear();
    serialPort->addItems(AxSerialLink::Ports());
    if (!chosen.isEmpty())
        serialPort->setCurrentText(chosen);
}

void ConnectForm::ChooseFile()
{
    const QString path =
        QFileDialog::getOpenFileName(window(), tr("Recorded flight"), file->text(),
                                     tr("Recorded flights (*.tlog *.csv *.txt);;All files (*)"));
    if (!path.isEmpty())
        file->setText(path);
}

QByteArray ConnectForm::Key() const
{
    return Settings().kind == LinkSettings::Kind::Simulator ? QByteArray() : key;
}

bool ConnectForm::IsKeyBad() const
{
    return isKeyBad && Settings().kind != LinkSettings::Kind::Simulator;
}

LinkSettings ConnectForm::Settings() const
{
    LinkSettings settings;
    settings.kind = static_cast<LinkSettings::Kind>(kind->currentIndex());
    settings.speed = speed->currentData().toDouble();
    settings.windSpeed = windSpeed->value();
    settings.windFrom = windFrom->value();
    settings.udpPort = udpPort->value();
    settings.tcpHost = tcpHost->text();
    settings.tcpPort = tcpPort->value();
    settings.serialPort = serialPort->currentText();
    settings.baud = baud->currentText().toInt();
    settings.file = file->text();
    return settings;
}

void ConnectForm::SetSettings(const LinkSettings& settings)
{
    kind->setCurrentIndex(static_cast<int>(settings.kind));
    speed->setCurrentIndex(qMax(0, speed->findData(settings.speed)));
    windSpeed->setValue(settings.windSpeed);
    windFrom->setValue(settings.windFrom);
    udpPort->setValue(settings.udpPort);
    tcpHost->setText(settings.tcpHost);
    tcpPort->setValue(settings.tcpPort);
    if (!settings.serialPort.isEmpty())
        serialPort->setCurrentText(settings.serialPort);
    baud->setCurrentText(QString::number(settings.baud));
    file->setText(settings.file);
}

void ConnectForm::SetChangeable(bool changeable)
{
    kind->setEnabled(changeable);
    keyRow->setEnabled(changeable);
    windSpeed->setEnabled(changeable);
    windFrom->setEnabled(changeable);
    for (int i = 1; i < pages->count(); ++i)
        pages->widget(i)->setEnabled(changeable);
}
