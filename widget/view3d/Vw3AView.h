#pragma once
// The base of the 3D views: a widget showing an Inventor scene of graphic nodes and tools,
// with camera presets, clipping and sections, a colour-map legend, axes, gnomon, compass,
// title and text overlays, picking, and image and Inventor-file export. It is an observer
// of the 3D-view and graphic preferences.
//
// Keys, while the view has focus (render area activated):
//   Home view all            U D E W N S   view from top, bottom, east, west, north, south
//   P / O perspective / orthographic        L view from section, Shift+L reverse the plane
//   + / - step the clip plane                Shift with + / - widen / narrow the slice
//   C knife mode             Alt+Return     leave fullscreen
// Mouse (Vg3SceneInteractor): left drag orbits, right drag or Ctrl/Shift + left drag pans,
// the wheel zooms toward the cursor, a right click opens the view's menu. The first left
// click on a view that is not activated activates it and moves nothing.

#include <velmora_widget_export.h>

#include <KbgBox.h>
#include <KbgClipPlaneDefinition.h>
#include <KbgVector3D.h>
#include <VuPosition.h>
#include <VuSelectionFlag.h>
#include <Vg3Annotation.h>
#include <VugCameraState.h>
#include <VuoIObserver.h>
#include <VupPreferenceModif.h>

#include <QHash>
#include <QImage>
#include <QMap>
#include <QSharedPointer>
#include <QWidget>
#include <memory>

class KbbStringFormat;
class KbdAVariable;
class KbgFence;
class KbgPlane;
class KbgRotation;
class QAction;
class QToolBar;
class SoAction;
class SoEventCallback;
class SoPickedPoint;
class SoSeparator;
class SoSwitch;
class Vg3ANode;
class Vg3ATool;
class Vg3IPickable;
class Vg3SceneInteractor;
class Vg3Ruler;
class Vg3SectionModel;
class VgpAPickedDetails;
class VgpIPickHandler;
class VssProject;
class VugColorScale;
class VugSectionDefinition;
class Vw3IContextMenuCallback;
class Vw3OivViewer;
class VwvIAcceptDrops;

class VELMORA_WIDGET_EXPORT Vw3AView : public QWidget, public VuoIObserver<VupPreferenceModif>
{
    Q_OBJECT
public:
    enum Action {
        VIEW_ALL,
        VIEW_TOP,
        VIEW_BOTTOM,
        VIEW_EAST,
        VIEW_WEST,
        VIEW_NORTH,
        VIEW_SOUTH,
        PROJECTION,
        FULLSCREEN,
        SECTION_VIEW,
        INVERT_COLORS,
        AXES,
        AXES_GRID,
        GNOMON,
        COMPASS,
        SAVE_IV_FILE,
        SECTION,
        REPORT,
        CLIPBOARD,
        IMAGE,
        LEGEND,
        EDIT_LEGEND,
        FENCE_PATH,
        SECTION_PROPERTIES,
        KNIFE,
        FENCE,
        PLANE_FROM_POINTS,
        FENCE_POINTS,
        POINTS_FROM_PICKING,
        ACTION_COUNT
    };
    // The interaction modes; their actions are exclusive.
    enum Mode {
        VIEWING_MODE,
        PICKING_MODE,
        SEEKING_MODE,
        RULER_MODE,
        KNIFE_MODE,
        FENCE_MODE,
        PICK_1_POINT_MODE,
        PICK_3_POINTS_MODE,
        PICK_MULTIPLE_POINTS_MODE,
        MODE_COUNT
    };

    explicit Vw3AView(QWidget* parent = nullptr);
    ~Vw3AView() override;

    // Nodes and tools. A node or tool is added once (again is refused with a warning).
    virtual void addNode(Vg3ANode* node, bool visible = true);
    virtual void addTool(Vg3ATool* tool, bool visible = true);
    void removeNode(Vg3ANode* node);
    void removeTool(Vg3ATool* tool);
    void setNodeVisibility(Vg3ANode* node, bool visible);
    bool isNodeVisible(Vg3ANode* node) const;
    void setToolVisibility(Vg3ATool* tool, bool visible);
    bool isToolVisible(Vg3ATool* tool) const;
    void setNodePickable(Vg3IPickable* node, bool pickable);
    int getVisibleNodesCount() const;
    // While off, node changes do not refresh the bounding box and decorations.
    void enableNodeRebuild(bool enable);

    // Camera.
    void viewAll();
    void lookAt(const KbgBox& box, float duration);
    void lookAt(const KbgVector3D& center, const KbgVector3D& halfSize, float duration);
    void setCameraOrientation(const KbgRotation& rotation);
    Vug::CameraState getCameraState() const;
    void setCameraState(const Vug::CameraState& state);
    void cancelPendingCameraChange();
    void resetViewer();
    // On: viewing mode; off: picking mode.
    void setViewMode(bool viewing);

    // Clipping and sections, through the section model.
    void setClipPlane(const KbgPlane& plane);
    void setPlane(const KbgVector3D& point, const KbgVector3D& normal);
    void flipPlane();
    void flipClipPlane();
    void setClippingMode(KbgClipPlaneDefinition::Mode mode);
    void setClipPlaneOnlyMode(bool only);
    void toggleClipping(bool enabled);
    void toggleClippingProperties(bool shown);
    virtual void toggleClippingManip();
    void resetClipping();
    void resetClippingPosition();
    void clipPlaneStepForward();
    void clipPlaneStepBackward();
    void clipPlaneIncreaseSliceWidth();
    void clipPlaneDecreaseSliceWidth();
    void setFence(const KbgFence& fence);
    virtual void setSection(const VugSectionDefinition& section);
    void cancelSectionModes();
    Vg3SectionModel* getSectionModel() const;
    // Measures in RULER mode (getRulerMode()); always among the view's tools.
    Vg3Ruler* getRuler() const;
    // What the user picked (picked(), in PICKING mode) reads as, from the node picked: one
    // "what: value" a line; empty for nothing or what is no node of the view.
    QStringList describePick(const SoPickedPoint* picked) const;
    static QString getClipPlaneKeysHelp();
    // The mouse and key bindings above, one "keys: what they do" per line: the view's
    // What's This text (Shift+F1), and the help a window or manual shows beside it.
    static QString getBindingsHelp();

    // Decorations.
    void toggleAxes(bool shown);
    void toggleAxesGrid(bool shown);
    void toggleGnomon(bool shown);
    void toggleCompass(bool shown);
    void toggleTitle(bool shown);
    void toggleTextOverlay(bool shown);
    void toggleAutomaticOrientationHelper(bool automatic);
    void setTitle(const QString& title);
    void setTitlePosition(Vg3Annotation::AnnotationPosition position);
    void setTextOverlay(const QString& text);
    void setTextOverlayPosition(Vg3Annotation::AnnotationPosition position);
    void setTextOverlaySize(int size);
    void setWhiteBackground(bool white);
    void setInvertColors(bool invert);
    bool getInvertColors() const;
    QColor getBackgroundColor() const;
    QColor getForegroundColor() const;

    // Vertical scale of every node, about the offset.
    void setZScale(float zScale);
    float getZScale() const;
    void setZScaleAuto(bool automatic);
    bool isZScaleAutomatic() const;
    // Subtracted from the data's coordinates before they become Inventor's floats: give map
    // data an offset near their centre. The camera, clip planes, picks and the bounding box
    // are in these scene coordinates; the axes label the data's own.
    KbgVector3D getOffset() const;
    void setOffset(const KbgVector3D& offset);
    KbgBox getBoundingBox() const;

    // Legend.
    // Makes the legend available. `discrete`: the values are codes, labelled per class.
    void setLegend(const VugColorScale& scale, const QString& title, const KbbStringFormat& format,
                   bool discrete = false);
    // Titled "name (unit)" and formatted as the variable says; without a scale, the
    // preferred colour scale stretched over the variable's range.
    void setLegend(const KbdAVariable& variable);
    void setLegend(const KbdAVariable& variable, const VugColorScale& scale);
    void setLegendAligment(Vu::Position alignment);
    void setLegendAvailable(bool available);
    void setLegendEnabled(bool enabled);
    bool isLegendShown() const;
    void invalidateLegend();

    // Picking. The handler on top of the stack gets the mouse and keys before the camera and
    // the shortcuts, and its help shows in the view's top-left corner. Handlers are not
    // owned. The bottom of the stack is the view's own overlay, which is never popped.
    void pushPickHandler(VgpIPickHandler* handler);
    VgpIPickHandler* popPickHandler();
    VgpIPickHandler* topPickHandler() const;
    // 1: one point, 3: three points, anything else: several points.
    void requestPickPoint(int count);
    void setContextMenuCallback(Vw3IContextMenuCallback* callback);
    void setPopupMenuEnabled(bool enabled);
    bool isPopupMenuEnabled() const;
    Vg3SceneInteractor* getSceneInteractor() const;
    Vw3OivViewer* getViewer() const;

    // Interaction-mode actions, checkable and exclusive.
    QAction* getViewingMode() const;
    QAction* getPickingMode() const;
    QAction* getSeekingMode() const;
    QAction* getRulerMode() const;
    QAction* getKnifeMode() const;
    QAction* getFenceMode() const;
    QAction* getPick1PointMode() const;
    QAction* getPick3PointsMode() const;
    QAction* getPickMultiplePointsMode() const;
    QAction* getMode(int mode) const;
    QAction* getAction(Action action) const;

    // Toolbars.
    QToolBar* getToolbar() const;
    QToolBar* getAuxToolbar() const;
    void enableToolbar(bool enable);
    void enableAuxToolbar(bool enable);
    void forceToolbar(bool force);
    void forceAuxToolbar(bool force);
    bool isToolbarEnabled() const;
    // At `index` among the toolbar's actions; past the end (or negative) appends.
    void insertActionInToolbar(QAction* action, int index = -1);

    // Focus among several views.
    // True once the view has drawn its first frame; a look-at asked before waits for it.
    bool isInitialized() const;
    void setActivated(bool activated);
    bool isActivated() const;
    void setAlwaysActivated(bool always);
    bool isAlwaysActivated() const;
    void setViewRef(const QString& viewRef);
    QString getViewRef() const;

    // Images and files. A null image (with a warning) when the render area cannot draw.
    QImage getImage(int width, int height);
    QImage getImage(double scale);
    // False (with a warning) when the image cannot be made or written.
    bool saveImage(const QString& fileName);
    bool copyToClipboard();
    // The whole view graph as an Inventor file, replaced atomically; false on failure.
    bool saveToIvFile(const QString& fileName);
    void setupForOffscreenRendering(bool enabled);
    bool isSetupForOffscreenRendering() const;
    void setReportTitle(const QString& title);
    void setReportDescription(const QString& description);
    void setFullScreen(bool fullScreen);
    bool isFullScreen() const;
    void setEnableDrops(bool enable, VwvIAcceptDrops* acceptor = nullptr);
    VssProject* getProject() const;

    // Preferences.
    void update(const VupPreferenceModif& modif) override;
    void destroyed(const VuoAObservable<VupPreferenceModif>* observable) override;

    // Inventor slots: separators under "vw3aview_inventor_slots" for outside helpers.
    SoSeparator* createInventorSlot();
    void freeInventorSlot(SoSeparator* slot);

    SoSeparator* getRoot() const;

public Q_SLOTS:
    void saveAsImage();
    void saveAsIvFile();
    void sendToReport();

Q_SIGNALS:
    void nodeAdded(Vw3AView* view, Vg3ANode* node);
    void nodeRemoved(Vw3AView* view, Vg3ANode* node);
    void cameraChanged();
    void cameraStateChanged(const Vug::CameraState& state);
    void offsetChanged(const KbgVector3D& offset);
    void sectionDefinitionChanged(const VugSectionDefinition& definition);
    void createSectionRequest(const VugSectionDefinition& definition);
    void importFenceRequest();
    void picked(Vu::SelectionFlag flag, const SoPickedPoint* point, bool& handled);
    void pickedMultiple(const QHash<const Vg3ANode*, QList<VgpAPickedDetails*>>& details, Vu::SelectionFlag flag);
    void viewActivated(bool activated, const QString& viewRef);
    // A report of the view was asked for: title, description and the image.
    void reportRequested(const QString& title, const QString& description, const QImage& image);

protected:
    SoSeparator* _getSceneRoot() const;
    SoSeparator* _getToolsRoot() const;
    const QMap<Vg3ANode*, SoSwitch*>& _getNodes() const;
    const QMap<Vg3ATool*, SoSwitch*>& _getTools() const;
    QAction* _makeAction(Action action);
    virtual void _setupTools();
    void _updateNodesZScale();
    void _updateBoundingBox();
    // Called when the render area becomes initialised.
    virtual void _initialized();
    // True once setCameraState has placed the camera.
    bool _isCameraSet() const;
    // The context menu for a right click; setPopupMenuEnabled(false) suppresses it.
    virtual void _showContextMenu(const SoPickedPoint* picked, const QPoint& globalPosition);
    virtual void _fillContextMenu(class QMenu* menu);
    virtual void _sectionDefinitionChanged(const VugSectionDefinition& definition);

    static void _traversalCallback(void* data, SoAction* action);
    static void _shortcutsCallback(void* data, SoEventCallback* node);

    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void _buildGraph();
    void _applyColors();
    void _updateDecorations();
    void _checkInitialized();
    void _startPendingLookAt();
    void _emitCameraChanged();

    std::unique_ptr<class Vw3AViewPrivate> const _d;
};

// The signals carry nodes; queued connections and signal spies need the type known.
Q_DECLARE_OPAQUE_POINTER(Vg3ANode*)
Q_DECLARE_METATYPE(Vg3ANode*)
