#pragma once

#include <QOpenGLWidget>
#include <functional>
#include <memory>

#include "host/Display.h"
#include "workbench/display/WorkDocument.h"

namespace qd::workbench {

class CordSymbols;

/// The 3-D view of a document. It follows the display state and the selection buffer and draws at most once per
/// frame, however much was marked. A click picks a part, Ctrl adds to what is picked; dragging turns, the middle
/// button pans, the wheel zooms.
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
  /// Turns the camera onto everything shown.
  void FitAll();
  /// Called with the part that was clicked, 0 for none, and whether it is to be added.
  void SetOnPick(std::function<void(iterator, bool)> onPick) { m_onPick = std::move(onPick); }
  /// Whether everything that was marked is on screen.
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

 private:
  struct Window;

  void Tell(unsigned long event, const QPointF& at, Qt::KeyboardModifiers modifiers);
  void FollowDisplay(const DisplayNotice& notice);
  void BuildSome();
  void AimAtAll();
  iterator PickAt(const QPointF& at);

  WorkDocument& m_doc;
  std::unique_ptr<Window> m_window;
  Subscription m_onDisplay;
  Subscription m_onSelection;
  std::function<void(iterator, bool)> m_onPick;
  QPointF m_pressed;
  bool m_fitWhenBuilt = true;
  bool m_building = false;
  bool m_dirty = true;
  bool m_touched = false;        // by the user: from then on the camera stays where it is
  bool m_turning = false;        // and the last frame was a slow one
  qint64 m_lastFrame = 0;        // milliseconds
  qint64 m_builtSinceFrame = 0;  // likewise
};

}  // namespace qd::workbench
