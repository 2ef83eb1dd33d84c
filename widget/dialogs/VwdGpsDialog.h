#pragma once
// The GPS dialog: turns the GPS on, shows it on the maps or keeps them centred on it, and
// sets the position by hand (there is no device), or drops the fix. The displays listen to
// its four signals. Keys: Alt+E/S/N the check boxes, Alt+X/Y the coordinates, Enter or
// Alt+P sets the position, Alt+L loses the fix, Esc closes.

#include <velmora_widget_export.h>

#include <QDialog>
#include <QPointF>
#include <memory>

class VELMORA_WIDGET_EXPORT VwdGpsDialog : public QDialog
{
    Q_OBJECT
public:
    explicit VwdGpsDialog(QWidget* parent = nullptr);
    ~VwdGpsDialog() override;

    bool isGpsEnabled() const;
    bool isVisibleOnMap() const;
    bool isCenteredOnMap() const;
    // The last position sent, and whether it is a fix.
    QPointF position() const;
    bool hasFix() const;

public Q_SLOTS:
    void setGpsEnabled(bool enabled);
    void setVisibleOnMap(bool visible);
    void setCenteredOnMap(bool centered);
    // Fills the coordinate fields and sends the position, as "Set position" does.
    void setPosition(const QPointF& position);
    // Sends the last position as no longer fixed; nothing happens without a fix.
    void loseFix();

Q_SIGNALS:
    void gpsEnabled(bool enabled);
    void gpsVisibleOnMap(bool visible);
    void gpsCenteredOnMap(bool centered);
    void gpsPositionChanged(const QPointF& position, bool valid);

private:
    void _updateState();

    std::unique_ptr<class VwdGpsDialogPrivate> const _d;
};
