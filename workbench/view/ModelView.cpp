#include "workbench/view/ModelView.h"

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkGenericRenderWindowInteractor.h>
#include <vtkHardwareSelector.h>
#include <vtkIdTypeArray.h>
#include <vtkInformation.h>
#include <vtkInteractorStyleTrackballCamera.h>
#include <vtkLightKit.h>
#include <vtkNew.h>
#include <vtkOpenGLState.h>
#include <vtkRenderer.h>
#include <vtkSelection.h>
#include <vtkSelectionNode.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QSurfaceFormat>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <utility>

#include "workbench/view/CordSymbols.h"
#include "workbench/view/MeshLabels.h"
#include "workbench/view/MeshScene.h"
#include "workbench/view/PartScene.h"

namespace qd::workbench {

/// What belongs to VTK.
struct ModelView::Window {
  vtkNew<vtkGenericOpenGLRenderWindow> window;
  vtkNew<vtkRenderer> renderer;
  vtkNew<vtkGenericRenderWindowInteractor> interactor;
  vtkNew<vtkInteractorStyleTrackballCamera> style;
  vtkNew<vtkCallbackCommand> makeCurrent;
  vtkNew<vtkCallbackCommand> isCurrent;
  vtkNew<vtkCallbackCommand> frame;
  std::unique_ptr<PartScene> scene;
  std::unique_ptr<MeshScene> meshes;
  MeshLabels* labels = nullptr;  // these are owned by the view
  CordSymbols* cords = nullptr;
  bool ready = false;
  bool painting = false;
};

void ModelView::SetDefaultFormat() {
  QSurfaceFormat format;
  format.setRenderableType(QSurfaceFormat::OpenGL);
  format.setVersion(3, 2);
  format.setProfile(QSurfaceFormat::CoreProfile);
  format.setRedBufferSize(8);
  format.setGreenBufferSize(8);
  format.setBlueBufferSize(8);
  format.setAlphaBufferSize(8);
  format.setDepthBufferSize(24);
  format.setStencilBufferSize(0);
  QSurfaceFormat::setDefaultFormat(format);
}

ModelView::ModelView(WorkDocument& doc, QWidget* parent)
    : QOpenGLWidget(parent), m_doc(doc), m_window(std::make_unique<Window>()) {
  setMinimumSize(200, 150);
  Window& w = *m_window;
  w.window->SetFrameBlitModeToBlitToCurrent();
  w.window->SetMultiSamples(0);
  w.window->AddRenderer(w.renderer);
  w.renderer->SetBackground(0.93, 0.95, 0.97);
  w.renderer->SetBackground2(0.62, 0.70, 0.80);
  w.renderer->GradientBackgroundOn();
  vtkNew<vtkLightKit> lights;
  lights->SetKeyLightIntensity(0.9);
  lights->AddLightsToRenderer(w.renderer);
  w.interactor->SetRenderWindow(w.window);
  w.interactor->SetInteractorStyle(w.style);
  w.scene = std::make_unique<PartScene>(doc, *w.renderer);
  w.meshes = std::make_unique<MeshScene>(doc, *w.renderer, [this] { Redraw(0); });
  w.labels = new MeshLabels(*w.meshes, *w.renderer, this);
  w.cords = new CordSymbols(doc, *w.renderer, this);

  w.makeCurrent->SetClientData(this);
  w.makeCurrent->SetCallback([](vtkObject*, unsigned long, void* self, void*) {
    auto* view = static_cast<ModelView*>(self);
    // Making a current context current again would unbind the frame buffer that is being painted.
    if (view->context() != nullptr && QOpenGLContext::currentContext() != view->context()) view->makeCurrent();
  });
  w.isCurrent->SetClientData(this);
  w.isCurrent->SetCallback([](vtkObject*, unsigned long, void* self, void* answer) {
    auto* view = static_cast<ModelView*>(self);
    *static_cast<bool*>(answer) =
        view->context() != nullptr && QOpenGLContext::currentContext() == view->context();
  });
  w.frame->SetClientData(this);
  w.frame->SetCallback([](vtkObject*, unsigned long, void* self, void*) {
    auto* view = static_cast<ModelView*>(self);
    if (!view->m_window->painting) view->update();
  });
  w.window->AddObserver(vtkCommand::WindowMakeCurrentEvent, w.makeCurrent);
  w.window->AddObserver(vtkCommand::WindowIsCurrentEvent, w.isCurrent);
  w.interactor->AddObserver(vtkCommand::RenderEvent, w.frame);
  // The interactor only asks for frames; painting is the widget's.
  w.interactor->EnableRenderOff();

  m_onDisplay = doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) { FollowDisplay(notice); });
  m_onSelection = doc.OnSelection([this](const Selection&) { Redraw(0); });
  doc.SetActiveView(this);
}

ModelView::~ModelView() {
  m_doc.SetActiveView(nullptr);
  makeCurrent();
  m_window->window->Finalize();
  m_window.reset();
  doneCurrent();
}

// ---- the document ---------------------------------------------------------------------------------------

/// While the display has something to tell, the frame waits for it: one frame shows all of an act.
void ModelView::Redraw(int) {
  m_dirty = true;
  if (!m_doc.GetDisplay().IsWaiting()) update();
}

void ModelView::FollowDisplay(const DisplayNotice& notice) {
  m_window->meshes->Follow(notice);
  Redraw(0);
}

bool ModelView::IsUpToDate() const {
  return !m_dirty && !m_building && !m_window->meshes->IsBuilding();
}

const CordSymbols& ModelView::Cords() const {
  return *m_window->cords;
}

bool ModelView::IsOver(CPoint screen) const {
  return isVisible() && rect().contains(mapFromGlobal(QPoint(screen.x, screen.y)));
}

void ModelView::Apply(const CQDUpdateRecord& record) {
  const auto adds = [](const tagTRNotify& change) {
    return change.kind == kChangeAdded && (change.dataType == kDataGeom || change.dataType == kDataMset);
  };
  // Several files may come one after another; the last one must not stand around the camera.
  if (!m_touched && std::any_of(record.changes.begin(), record.changes.end(), adds)) m_fitWhenBuilt = true;
  m_window->scene->Apply(record);
  m_window->meshes->Apply(record);
  m_window->cords->Apply(record);
  if (m_window->scene->IsBuilding() && !m_building) {
    m_building = true;
    QTimer::singleShot(0, this, [this] { BuildSome(); });
  }
  Redraw(0);
}

/// Shapes are made in short runs between the events, so the window stays alive.
void ModelView::BuildSome() {
  constexpr int kRun = 20;
  const bool more = m_window->scene->Build(kRun);
  // Drawn as they come: a frame that takes up many new shapes at once would be a pause of its own. But no more
  // time goes into such frames than into the shapes.
  m_builtSinceFrame += kRun;
  if (!more || m_builtSinceFrame >= m_lastFrame) Redraw(0);
  if (more) {
    QTimer::singleShot(0, this, [this] { BuildSome(); });
    return;
  }
  QTimer::singleShot(0, this, [this] {  // a frame of its own: it is the first that shows everything
    m_building = m_window->scene->IsBuilding();
    if (m_building) return BuildSome();
    if (m_fitWhenBuilt) FitAll();
  });
}

void ModelView::FitAll() {
  AimAtAll();
  Redraw(0);
}

void ModelView::AimAtAll() {
  double bounds[6];
  const bool parts = m_window->scene->ShownBounds(bounds);
  if (!m_window->meshes->AddShownBounds(bounds, parts)) return;
  m_fitWhenBuilt = false;
  vtkCamera* camera = m_window->renderer->GetActiveCamera();
  const double least[3] = {bounds[0], bounds[2], bounds[4]};
  const double greatest[3] = {bounds[1], bounds[3], bounds[5]};
  double centre[3];
  for (int axis = 0; axis < 3; ++axis) centre[axis] = (least[axis] + greatest[axis]) / 2;
  camera->SetFocalPoint(centre);
  camera->SetPosition(centre[0] + 1, centre[1] - 1.4, centre[2] + 0.9);
  camera->SetViewUp(0, 0, 1);
  m_window->renderer->ResetCamera(bounds);
}

// ---- painting -------------------------------------------------------------------------------------------

void ModelView::initializeGL() {
  vtkGenericOpenGLRenderWindow& window = *m_window->window;
  window.SetOwnContext(0);
  window.SetReadyForRendering(true);
  window.OpenGLInit();
  m_window->ready = true;
}

void ModelView::resizeGL(int width, int height) {
  const double scale = devicePixelRatioF();
  const int deviceWidth = static_cast<int>(width * scale);
  const int deviceHeight = static_cast<int>(height * scale);
  m_window->window->SetSize(deviceWidth, deviceHeight);
  m_window->interactor->SetSize(deviceWidth, deviceHeight);
}

void ModelView::paintGL() {
  if (!m_window->ready || m_window->painting) return;
  m_window->painting = true;
  m_builtSinceFrame = 0;
  QElapsedTimer time;
  time.start();
  if (m_dirty) {
    m_dirty = false;
    m_window->scene->Update();
    m_window->meshes->Update();
    if (m_fitWhenBuilt && !m_building && !m_window->meshes->IsBuilding()) AimAtAll();
    m_window->renderer->ResetCameraClippingRange();
  }
  // Qt has used the context in between.
  m_window->window->GetState()->Reset();
  m_window->window->GetState()->Push();
  m_window->window->Render();
  m_window->window->GetState()->Pop();
  // What is seen through things is mixed in the picture, not with the window behind it.
  QOpenGLFunctions* gl = context()->functions();
  gl->glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
  gl->glClearColor(0, 0, 0, 1);
  gl->glClear(GL_COLOR_BUFFER_BIT);
  gl->glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
  m_window->painting = false;
  m_window->labels->Follow();
  m_window->cords->Follow();
  m_lastFrame = time.elapsed();
}

// ---- mouse ----------------------------------------------------------------------------------------------

void ModelView::Tell(unsigned long event, const QPointF& at, Qt::KeyboardModifiers modifiers) {
  const double scale = devicePixelRatioF();
  m_window->interactor->SetEventInformationFlipY(
      static_cast<int>(at.x() * scale), static_cast<int>(at.y() * scale),
      modifiers.testFlag(Qt::ControlModifier) ? 1 : 0, modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0);
  m_window->interactor->InvokeEvent(event);
  m_window->renderer->ResetCameraClippingRange();
  update();
}

void ModelView::mousePressEvent(QMouseEvent* event) {
  setFocus();
  m_touched = true;
  m_pressed = event->position();
  // Ctrl means adding to the selection here, not spinning.
  if (event->button() == Qt::LeftButton) Tell(vtkCommand::LeftButtonPressEvent, event->position(), {});
  if (event->button() == Qt::MiddleButton) Tell(vtkCommand::MiddleButtonPressEvent, event->position(), {});
  if (event->button() == Qt::RightButton) Tell(vtkCommand::RightButtonPressEvent, event->position(), {});
}

void ModelView::mouseReleaseEvent(QMouseEvent* event) {
  if (std::exchange(m_turning, false)) m_window->meshes->EndTurning();
  if (event->button() == Qt::MiddleButton) Tell(vtkCommand::MiddleButtonReleaseEvent, event->position(), {});
  if (event->button() == Qt::RightButton) Tell(vtkCommand::RightButtonReleaseEvent, event->position(), {});
  if (event->button() != Qt::LeftButton) return;
  Tell(vtkCommand::LeftButtonReleaseEvent, event->position(), {});
  const bool clicked = (event->position() - m_pressed).manhattanLength() < QApplication::startDragDistance();
  if (clicked && m_onPick) m_onPick(PickAt(event->position()), event->modifiers().testFlag(Qt::ControlModifier));
}

void ModelView::mouseMoveEvent(QMouseEvent* event) {
  constexpr qint64 kSlow = 80;  // milliseconds
  if (event->buttons() != Qt::NoButton && !m_turning && m_lastFrame > kSlow) {
    m_turning = true;
    m_window->meshes->BeginTurning();
  }
  if (event->buttons() != Qt::NoButton) Tell(vtkCommand::MouseMoveEvent, event->position(), {});
}

void ModelView::wheelEvent(QWheelEvent* event) {
  if (event->angleDelta().y() == 0) return;
  m_touched = true;
  const auto what =
      event->angleDelta().y() > 0 ? vtkCommand::MouseWheelForwardEvent : vtkCommand::MouseWheelBackwardEvent;
  Tell(what, event->position(), {});
}

iterator ModelView::PickAt(const QPointF& at) {
  if (!m_window->ready) return 0;
  makeCurrent();
  const double scale = devicePixelRatioF();
  const auto x = static_cast<unsigned>(at.x() * scale);
  const auto y = static_cast<unsigned>((height() - 1 - at.y()) * scale);
  vtkNew<vtkHardwareSelector> selector;
  selector->SetRenderer(m_window->renderer);
  selector->SetFieldAssociation(vtkDataObject::FIELD_ASSOCIATION_CELLS);
  selector->SetArea(x, y, x, y);
  m_window->painting = true;
  const auto selection = vtkSmartPointer<vtkSelection>::Take(selector->Select());
  m_window->painting = false;
  update();
  if (selection == nullptr || selection->GetNumberOfNodes() == 0) return 0;
  vtkInformation* properties = selection->GetNode(0)->GetProperties();
  const auto* picked = vtkProp::SafeDownCast(properties->Get(vtkSelectionNode::PROP()));
  auto* cells = vtkArrayDownCast<vtkIdTypeArray>(selection->GetNode(0)->GetSelectionList());
  const bool mesh = cells != nullptr && cells->GetNumberOfValues() > 0;
  if (const iterator set = mesh ? m_window->meshes->SetOfCell(picked, cells->GetValue(0)) : 0; set != 0)
    return set;
  if (properties->Has(vtkSelectionNode::COMPOSITE_INDEX()) == 0) return 0;
  // Number 0 is the data set as a whole, its blocks follow.
  const int index = properties->Get(vtkSelectionNode::COMPOSITE_INDEX());
  return index > 0 ? m_window->scene->PartOfBlock(picked, static_cast<unsigned>(index - 1)) : 0;
}

}  // namespace qd::workbench
