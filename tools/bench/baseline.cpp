// The baseline that the client is measured against: the least that a Qt program can do.
//
//   (no argument)  an empty window of the client's size
//   --lines        also reads the service's lines; each "error: " line changes the window's colour
//   --animate      also animates one number at the pace of the switch's pulse and repaints a plain
//                  rectangle of the switch's size

#include <QApplication>
#include <QMainWindow>
#include <QPainter>
#include <QSequentialAnimationGroup>
#include <QTcpSocket>
#include <QVariantAnimation>

namespace {

constexpr QSize windowExtent{360, 560};
constexpr QRect rectangle{70, 150, 220, 100};
constexpr int halfMs = 700;
constexpr quint16 servicePort = 47652;

class Plain : public QWidget
{
public:
    using QWidget::QWidget;

    void setColour(const QColor &value)
    {
        colour = value;
        update();
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override { QPainter{this}.fillRect(rect(), colour); }

private:
    QColor colour{Qt::blue};
};

void addHalf(QSequentialAnimationGroup &group, Plain &plain, double from, double to)
{
    auto *const half = new QVariantAnimation{&group};
    half->setStartValue(from);
    half->setEndValue(to);
    half->setDuration(halfMs);
    half->setEasingCurve(QEasingCurve::InOutSine);
    QObject::connect(half, &QVariantAnimation::valueChanged, &plain,
                     [&plain](const QVariant &value) {
                         plain.setColour(QColor::fromHsvF(value.toDouble(), 1.0, 1.0));
                     });
    group.addAnimation(half);
}

void readLines(QTcpSocket &socket, Plain &plain)
{
    static bool red = false;
    while (socket.canReadLine()) {
        const QString line = QString::fromUtf8(socket.readLine()).trimmed();
        if (line.startsWith(QLatin1String{"error: "})) {
            red = !red;
            plain.setColour(red ? QColor{220, 64, 64} : QColor{Qt::blue});
        }
    }
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application{argc, argv};
    const QStringList arguments = QCoreApplication::arguments();

    QMainWindow window;
    window.setFixedSize(windowExtent);

    Plain plain{&window};
    plain.setGeometry(rectangle);
    plain.hide();

    QSequentialAnimationGroup animation;
    QTcpSocket socket;
    if (arguments.contains(QLatin1String{"--animate"})) {
        plain.show();
        addHalf(animation, plain, 0.0, 0.5);
        addHalf(animation, plain, 0.5, 0.0);
        animation.setLoopCount(-1);
        animation.start();
    } else if (arguments.contains(QLatin1String{"--lines"})) {
        plain.show();
        QObject::connect(&socket, &QTcpSocket::readyRead, &plain,
                         [&socket, &plain] { readLines(socket, plain); });
        socket.connectToHost(QStringLiteral("127.0.0.1"), servicePort);
    }

    window.show();
    return QApplication::exec();
}
