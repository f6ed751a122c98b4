#pragma once
#include "host/aircraft/LinkSettings.h"

#include <QWidget>

class LimitedNumber;
class QComboBox;
class QLabel;
class QLineEdit;
class QSpinBox;
class QStackedWidget;

/// Where aircraft are to be heard, and the key that signs messages, which lives in this form alone. GUI
/// thread.
class ConnectForm : public QWidget
{
    Q_OBJECT
public:
    explicit ConnectForm(QWidget* parent = nullptr);

    LinkSettings Settings() const;
    void SetSettings(const LinkSettings& settings);
    /// 32 bytes, or none; the simulator's is none.
    QByteArray Key() const;
    /// Whether something is given that is no key: then nothing should be connected, as it would be without.
    bool IsKeyBad() const;
    /// What cannot be changed while something is connected; the simulator's speed can.
    void SetChangeable(bool changeable);

signals:
    /// Something of the connection is another one, but not the simulator's speed.
    void Changed();
    void SpeedChanged(double times);
    /// Something that the operator should know.
    void Told(const QString& text);

private:
    QWidget* BuildSimulator();
    QWidget* BuildUdp();
    QWidget* BuildTcp();
    QWidget* BuildSerial();
    QWidget* BuildFile();
    QWidget* BuildKey();
    void ListPorts();
    void ChooseFile();
    void ReadKeyFile();
    void TakeKey(const QByteArray& contents);

    QComboBox* kind;
    QStackedWidget* pages;
    QComboBox* speed;
    LimitedNumber* windSpeed;
    LimitedNumber* windFrom;
    QSpinBox* udpPort;
    QLineEdit* tcpHost;
    QSpinBox* tcpPort;
    QComboBox* serialPort;
    QComboBox* baud;
    QLineEdit* file;
    QWidget* keyRow;
    QLineEdit* keyText;
    QLabel* keyState;
    QByteArray key;
    bool isKeyBad = false;
};
