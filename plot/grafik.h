#pragma once
// The form grafik, "Measurement Display": the plot with its level and frequency strips and the
// panel of read-outs at the right. Drawing passes reach it through PlotForm.

#include "plot/plotform.h"

#include <QWidget>
#include <functional>

class QCheckBox;
class QLabel;
class QPushButton;

namespace kw {

class Mdi;

// A picture area on the screen: the surface draws into an image, and the widget shows the image,
// so a covered window comes back without a new pass.
class PictureBox : public QWidget {
    Q_OBJECT
public:
    explicit PictureBox(const QString &name, QWidget *parent = nullptr);
    ImageSurface &surface() { return surface_; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    ImageSurface surface_;
};

class Grafik : public QWidget, public PlotForm {
    Q_OBJECT
public:
    explicit Grafik(QWidget *parent = nullptr);
    ~Grafik() override;

    Surface &picture1() override { return pic1_->surface(); }
    Surface &picture2() override { return pic2_->surface(); }
    Surface &picture3() override { return pic3_->surface(); }
    void setCaption(const QString &text) override;
    QString caption() const override { return windowTitle(); }
    void setLogBox(bool enabled, bool checked) override;
    void setUnitLabel(const QString &text) override;
    void setDistanceLabel(bool visible, const QString &text) override;
    void setMemoryLabel(const QString &text) override;
    void setButtons(bool peak, bool centre, bool twice) override;
    void showPicture() override;
    void showCursors(const CursorReadouts &readouts) override;

    // The layout of load and resize; scales too unless only loading.
    void applyLayout(bool withScales);

    PictureBox *pictureBox(int number) const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    // The plot lives as long as the frame: closing it alone would leave no way to get it back.
    void closeEvent(QCloseEvent *event) override;

private:
    void fitPanelFont();

    PictureBox *pic1_ = nullptr;
    PictureBox *pic2_ = nullptr;
    PictureBox *pic3_ = nullptr;
    QWidget *pic4_ = nullptr;
    QCheckBox *check1_ = nullptr;
    QCheckBox *check2_ = nullptr;
    QPushButton *command_[3] = {};
    QLabel *label4_ = nullptr;
    QLabel *label5_ = nullptr;
    QLabel *label6_ = nullptr;
    QLabel *label11_ = nullptr;
    // freqa, leva, freqb, levb, freqab, levab
    QLabel *readout_[6] = {};
    std::function<void()> previousConfigurationHook_;
};

// Shows grafik in the frame at its saved place; the form already loaded is brought forward.
Grafik *showGrafik(Mdi &window);
// Puts grafik's placement into formpos (2..5 in twips, 1 the window state) for setting.def.
void storeGrafikPlacement(Mdi &window);

}  // namespace kw
