#include "shell/about.h"

#include "shell/forms.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kw {

namespace {

class About : public QWidget {
public:
    About()
    {
        setWindowTitle(QStringLiteral("About/Support"));
        auto *label1 = named(new QLabel(QStringLiteral("KW3400R"), this), "Label1");
        QFont big = label1->font();
        big.setPointSize(big.pointSize() + 6);
        big.setBold(true);
        label1->setFont(big);
        auto *label2 = named(new QLabel(QStringLiteral("Version 1.53 for the KT3400 and KT3420 analysers"), this), "Label2");
        auto *fields = new QFormLayout;
        const struct {
            const char *name;
            const char *caption;
            const char *value;
        } support[] = {
            {"Label3", "Company", "Vorlane Instruments"},
            {"Label4", "Telephone", "+49 711 555 0340"},
            {"Label5", "Telefax", "+49 711 555 0349"},
            {"Label6", "E-mail", "support@vorlane.example"},
            {"Label7", "Home page", "www.vorlane.example"},
        };
        for (const auto &row : support) {
            auto *value = named(new QLabel(QString::fromUtf8(row.value), this), row.name);
            value->setTextInteractionFlags(Qt::TextSelectableByMouse);
            fields->addRow(QString::fromUtf8(row.caption) + QLatin1Char(':'), value);
        }
        auto *command1 = named(new QPushButton(QStringLiteral("OK"), this), "Command1");
        auto *buttons = new QHBoxLayout;
        buttons->addStretch(1);
        buttons->addWidget(command1);
        auto *layout = new QVBoxLayout(this);
        layout->addWidget(label1);
        layout->addWidget(label2);
        layout->addSpacing(8);
        layout->addLayout(fields);
        layout->addLayout(buttons);
        connect(command1, &QPushButton::clicked, this, [this] { unloadSelf(this); });
    }
};

}  // namespace

void registerAboutForm()
{
    registerForm(QStringLiteral("about"), [] { return new About; });
}

}  // namespace kw
