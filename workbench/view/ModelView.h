#pragma once

#include <QImage>
#include <QOpenGLWidget>
#include <array>
#include <functional>
#include <memory>
#include <optional>

#include "host/Display.h"
#include "workbench/display/WorkDocument.h"
#include "workbench/view/FramePace.h"
#include "workbench/view/PickRay.h"
#include "workbench/view/ViewMouse.h"

namespace qd::workbench {

class CordSymbols;
class ViewPicking;

/// The 3-D view of a document. It follows the display state and the selection buffer and draws at most once per
/// frame, however much was marked. A click picks what the document's filter says, Shift adds to what is picked and
/// Ctrl turns it round; what dragging does is the user's choice, and where the camera stands is the document's.
class ModelView final : public QOpenGLWidget, public CQDViewBase {
 public:
  explicit ModelView(WorkDocument& doc, QWidget* parent = nullptr);
  ~ModelView() override;
  ModelView(const ModelView&) = delete;
  ModelView& operator=(const ModelView&) = delete;

  /// The format that every OpenGL widget of the program must have; set it before the application is made.
  static void SetDefaultFormat();

  /// Takes over a change of the database; shapes are made a few at a time.
  void Apply(const CQDUpdateRecord& record);
  /// The next drag pulls a rectangle to zoom to.
  void AwaitRectangle() { m_mouse.AwaitRectangle(); }
  /// The next click cuts the picture at the face that it meets.
  void AwaitFace();
  /// The picture in any size, with the axes and what else is written over it, but without what one clicks.
  QImage Render(QSize size);
  /// What the mouse picks.
  ViewPicking& Picking();
  /// Whether everything that was marked is on screen, and a region that was pulled has been looked through.
  bool IsUpToDate() const;
  /// The symbols of coordinate systems over the picture.
  const CordSymbols& Cords() const;

  void Redraw(int reserved) override;
  CQDRenderManager* GetRenderManager() override { return &m_doc.GetDisplay().Parts(); }
  int IsPostMode() const override { return 0; }
  void Invalidate(int) override { Redraw(0); }
  bool IsOver(CPoint screen) const override;

 protected:
  void initializeGL() override;
  void resizeGL(int width, int height) override;
  void paintGL() override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Window;

  /// Whether the picture is whole and of now.
  bool IsDrawn() const;
  void FollowDisplay(const DisplayNotice& notice);
  void BuildSome();
  void FollowSettings();
  void FitNew();
  void PlaceCamera();
  Looking::Picture Picture();
  std::optional<ViewBox> ShownBounds() const;
  std::optional<double> DepthAt(const QPointF& at);
  PickRay RayAt(const QPointF& at);
  std::function<std::optional<PickRay>(const Vector3&)> RayTo();
  void CutAt(const QPointF& at);
  void Draw();
  bool BeginFrame();
  void EndFrame(bool quick, qint64 milliseconds);

  WorkDocument& m_doc;
  std::unique_ptr<Window> m_window;
  Subscription m_onDisplay;
  Subscription m_onSelection;
  Subscription m_onCamera;
  Subscription m_onSettings;
  Subscription m_onSections;
  Subscription m_onPicks;
  ViewMouse m_mouse;
  bool m_awaitsFace = false;
  bool m_fitWhenBuilt = true;
  bool m_building = false;
  bool m_dirty = true;
  bool m_picksChanged = false;  // since the last frame
  bool m_wasCut = false;        // the last frame was
  FramePace m_pace{[this] { update(); }};
  std::array<double, 16> m_seenFrom{};  // by the camera of the last frame
  std::size_t m_quickFaces = 0;
  qint64 m_lastFrame = 0;        // milliseconds
  qint64 m_builtSinceFrame = 0;  // likewise
};

}  // namespace qd::workbench
