#include "workbench/view/ModelView.h"

#include <vtkCallbackCommand.h>
#include <vtkCamera.h>
#include <vtkGenericOpenGLRenderWindow.h>
#include <vtkLightKit.h>
#include <vtkMatrix4x4.h>
#include <vtkNew.h>
#include <vtkOpenGLState.h>
#include <vtkRenderer.h>

#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QPainter>
#include <QSurfaceFormat>
#include <QTimer>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "workbench/display/SelectedBounds.h"
#include "workbench/display/ViewSettings.h"
#include "workbench/view/CordSymbols.h"
#include "workbench/view/CornerTriad.h"
#include "workbench/view/MeasureLines.h"
#include "workbench/view/MeshLabels.h"
#include "workbench/view/MeshScene.h"
#include "workbench/view/PartScene.h"
#include "workbench/view/PickTrees.h"
#include "workbench/view/PickedScene.h"
#include "workbench/view/Projection.h"
#include "workbench/view/QualityLegend.h"
#include "workbench/view/SectionHandles.h"
#include "workbench/view/SectionScene.h"
#include "workbench/view/SeenDepths.h"
#include "workbench/view/ViewCube.h"
#include "workbench/view/ViewPicking.h"
#include "workbench/view/WholeLines.h"

namespace qd::workbench {

namespace {

constexpr int kSamples = 4;   // of a pixel, for smooth edges
constexpr double kReach = 5;  // pixels beside a line in which a click still takes it

}  // namespace

/// What belongs to VTK.
struct ModelView::Window {
  vtkNew<vtkGenericOpenGLRenderWindow> window;
  vtkNew<vtkRenderer> renderer;
  vtkNew<vtkCallbackCommand> makeCurrent;
  vtkNew<vtkCallbackCommand> isCurrent;
  PickTrees trees;
  std::unique_ptr<PartScene> scene;
  std::unique_ptr<MeshScene> meshes;
  std::unique_ptr<SectionScene> sections;
  std::unique_ptr<PickedScene> picked;
  std::unique_ptr<ViewPicking> picking;
  SectionHandles* handles = nullptr;
  MeshLabels* labels = nullptr;  // these are owned by the view
  CordSymbols* cords = nullptr;
  MeasureLines* measured = nullptr;
  QualityLegend* legend = nullptr;
  CornerTriad* triad = nullptr;
  ViewCube* cube = nullptr;
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
    : QOpenGLWidget(parent),
      m_doc(doc),
      m_window(std::make_unique<Window>()),
      m_mouse(doc.GetLooking(), *this, [this](const QPointF& at) { return DepthAt(at); }) {
  setMinimumSize(200, 150);
  Window& w = *m_window;
  w.window->SetFrameBlitModeToBlitToCurrent();
  w.window->SetMultiSamples(0);
  w.window->AddRenderer(w.renderer);
  vtkNew<vtkLightKit> lights;
  lights->SetKeyLightIntensity(0.9);
  lights->AddLightsToRenderer(w.renderer);
  w.scene = std::make_unique<PartScene>(doc, *w.renderer, w.trees);
  w.meshes = std::make_unique<MeshScene>(doc, *w.renderer, w.scene->Cuts(), w.trees, [this] {
    m_window->picking->NoteChange();
    Redraw(0);
  });
  w.labels = new MeshLabels(*w.meshes, *w.renderer, this);
  w.cords = new CordSymbols(doc, *w.renderer, this);
  w.measured = new MeasureLines(doc, *w.renderer, this);
  w.legend = new QualityLegend(this);
  w.sections = std::make_unique<SectionScene>(doc, *w.scene, *w.meshes, *w.renderer);
  w.picked = std::make_unique<PickedScene>(doc, *w.renderer, w.scene->Cuts());
  const auto depths = [this]() -> std::unique_ptr<const SeenDepths> {
    if (!IsDrawn()) return nullptr;
    makeCurrent();
    return std::make_unique<const SeenDepths>(*m_window->renderer);
  };
  w.picking = std::make_unique<ViewPicking>(
      doc, *w.scene, *w.meshes, *w.sections, *w.renderer,
      ViewPicking::Eye{[this](const QPointF& at) { return RayAt(at); }, [this] { return RayTo(); }, depths,
                       [this] { return m_building; }},
      this);
  setMouseTracking(true);
  w.handles = new SectionHandles(doc, *w.renderer, this);
  w.triad = new CornerTriad(doc.GetLooking(), this);
  w.cube = new ViewCube(doc.GetLooking(), this);

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
  w.window->AddObserver(vtkCommand::WindowMakeCurrentEvent, w.makeCurrent);
  w.window->AddObserver(vtkCommand::WindowIsCurrentEvent, w.isCurrent);

  m_onDisplay = doc.GetDisplay().Subscribe([this](const DisplayNotice& notice) { FollowDisplay(notice); });
  m_onSelection = doc.OnSelection([this](const Selection&) { Redraw(0); });
  m_onCamera = doc.GetLooking().Subscribe([this](const ViewCamera&) {
    m_window->picking->EndHover();
    update();
  });
  m_onSettings = ViewSettings::Ours().Subscribe([this](const ViewSettings&) { FollowSettings(); });
  FollowSettings();
  m_onSections = doc.GetSections().Subscribe([this](const Sections&) { Redraw(0); });
  m_onPicks = doc.GetPicks().Subscribe([this](const Picks&) {
    m_window->picked->Touch();
    m_picksChanged = true;
    Redraw(0);
  });
  doc.GetLooking().SetPicture([this] { return Picture(); });
  doc.SetActiveView(this);
}

ModelView::~ModelView() {
  m_doc.SetActiveView(nullptr);
  m_doc.GetLooking().SetPicture(nullptr);
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
  m_window->scene->Follow(notice);
  m_window->meshes->Follow(notice);
  m_window->picked->Touch();
  m_window->picking->NoteChange();
  Redraw(0);
}

bool ModelView::IsUpToDate() const {
  return IsDrawn() && !m_window->picking->IsWorking();
}

bool ModelView::IsDrawn() const {
  return !m_dirty && !m_building && !m_window->meshes->IsBuilding() && !m_pace.IsWaiting();
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
  if (std::any_of(record.changes.begin(), record.changes.end(), adds)) m_fitWhenBuilt = true;
  m_window->scene->Apply(record);
  m_window->meshes->Apply(record);
  m_window->cords->Apply(record);
  const auto looks = [](const tagTRNotify& change) {
    return change.dataType == kDataGeom || change.dataType == kDataMset || change.dataType == kDataMaterial;
  };
  if (std::any_of(record.changes.begin(), record.changes.end(), looks)) m_window->picked->Touch();
  m_window->picking->NoteChange();
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
    if (m_fitWhenBuilt) FitNew();
  });
}

void ModelView::FollowSettings() {
  struct Colours {
    double below[3];
    double above[3];
  };
  constexpr Colours kLight{{0.93, 0.95, 0.97}, {0.62, 0.70, 0.80}};
  constexpr Colours kDark{{0.24, 0.27, 0.31}, {0.09, 0.11, 0.14}};
  const ViewSettings& settings = ViewSettings::Ours();
  const bool darkWindow = palette().color(QPalette::Window).lightness() < 128;
  const bool dark =
      settings.GetGround() == Ground::Dark || (settings.GetGround() == Ground::AsWindow && darkWindow);
  const Colours& colours = dark ? kDark : kLight;
  vtkRenderer& renderer = *m_window->renderer;
  renderer.SetBackground(settings.IsPlain() && !dark ? std::array{1.0, 1.0, 1.0}.data() : colours.below);
  renderer.SetBackground2(colours.above);
  renderer.SetGradientBackground(!settings.IsPlain());
  m_window->window->SetMultiSamples(settings.IsSmooth() ? kSamples : 0);
  update();
}

void ModelView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) FollowSettings();
  QOpenGLWidget::changeEvent(event);
}

// ---- the camera -----------------------------------------------------------------------------------------

void ModelView::FitNew() {
  if (!ShownBounds()) return;
  m_fitWhenBuilt = false;
  m_doc.GetLooking().Begin();
  Redraw(0);
}

std::optional<ViewBox> ModelView::ShownBounds() const {
  double bounds[6];
  const bool parts = m_window->scene->ShownBounds(bounds);
  if (!m_window->meshes->AddShownBounds(bounds, parts)) return std::nullopt;
  return ViewBox{{bounds[0], bounds[2], bounds[4]}, {bounds[1], bounds[3], bounds[5]}};
}

Looking::Picture ModelView::Picture() {
  return {.aspect = std::max(width(), 1) / static_cast<double>(std::max(height(), 1)),
          .shown = [this] { return ShownBounds(); },
          .selected = [this] { return SelectedBounds(m_doc); }};
}

void ModelView::PlaceCamera() {
  const ViewCamera& from = m_doc.GetLooking().Camera();
  vtkCamera* camera = m_window->renderer->GetActiveCamera();
  camera->SetViewAngle(ViewCamera::kAngle);
  camera->SetFocalPoint(from.Focus().data());
  camera->SetPosition(from.Eye().data());
  camera->SetViewUp(from.Up().data());
  const int parallel = from.IsParallel() ? 1 : 0;
  if (camera->GetParallelProjection() != parallel) m_seenFrom = {};
  camera->SetParallelProjection(parallel);
  camera->SetParallelScale(from.HalfHeight());
  m_window->renderer->ResetCameraClippingRange();
  BringLinesForward(parallel, from.Distance(), camera->GetClippingRange());
}

std::optional<double> ModelView::DepthAt(const QPointF& at) {
  if (!rect().contains(at.toPoint())) return std::nullopt;
  const PickRay ray = RayAt(at);
  const auto distance = m_window->picking->Finder().DistanceAt(ray);
  if (!distance) return std::nullopt;
  const ViewCamera& camera = m_doc.GetLooking().Camera();
  const Vector3 point = Vector3(ray.origin) + Vector3(ray.direction) * *distance;
  return Dot(point - camera.Eye(), camera.Ahead());
}

/// The line of sight through the middle of a pixel.
PickRay ModelView::RayAt(const QPointF& at) {
  PlaceCamera();
  PickRay ray =
      RayThrough(*m_window->renderer, size(), {std::floor(at.x()) + 0.5, std::floor(at.y()) + 0.5}, kReach);
  m_window->sections->CutRay(ray);
  return ray;
}

/// Lines of sight as the camera stands now.
std::function<std::optional<PickRay>(const Vector3&)> ModelView::RayTo() {
  const Projection project(*m_window->renderer, size());
  return [this, project](const Vector3& point) -> std::optional<PickRay> {
    const auto image = project(point[0], point[1], point[2]);
    if (!image) return std::nullopt;
    PickRay ray = RayThrough(*m_window->renderer, size(), image->at, kReach);
    m_window->sections->CutRay(ray);
    return ray;
  };
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
  m_seenFrom = {};  // nothing is left of the last frame
  constexpr int kGap = 8;
  m_window->triad->move(kGap, height - CornerTriad::kSize - kGap);
  m_window->cube->move(width - ViewCube::kSize - kGap, kGap);
}

void ModelView::paintGL() {
  if (!m_window->ready || m_window->painting) return;
  m_window->painting = true;
  m_builtSinceFrame = 0;
  QElapsedTimer time;
  time.start();
  const bool quick = BeginFrame();
  Draw();
  m_window->painting = false;
  m_window->labels->Follow();
  m_window->cords->Follow();
  m_window->measured->Follow();
  m_window->legend->Follow(m_window->meshes->Colours());
  m_window->handles->Follow();
  EndFrame(quick, time.elapsed() - m_window->sections->TakeSpent());
}

/// Draws into the frame buffer that is bound.
void ModelView::Draw() {
  // Qt has used the context in between.
  m_window->window->GetState()->Reset();
  m_window->window->GetState()->vtkglDepthFunc(GL_LEQUAL);  // where things coincide the last one is seen
  m_window->window->GetState()->Push();
  m_window->window->Render();
  m_window->window->GetState()->Pop();
  // What is seen through things is mixed in the picture, not with the window behind it.
  QOpenGLFunctions* gl = context()->functions();
  gl->glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
  gl->glClearColor(0, 0, 0, 1);
  gl->glClear(GL_COLOR_BUFFER_BIT);
  gl->glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
}

/// Brings what is drawn up to date; returns whether only some of it is drawn, for the sake of time.
bool ModelView::BeginFrame() {
  PartScene& parts = *m_window->scene;
  MeshScene& meshes = *m_window->meshes;
  bool meshesChanged = false;
  const bool changed = std::exchange(m_dirty, false);
  if (changed) {
    parts.Update();
    meshesChanged = meshes.Update();
    m_window->picked->Update();
    if (m_window->sections->Update()) Redraw(0);
    if (m_fitWhenBuilt && !m_building && !meshes.IsBuilding()) FitNew();
  }
  PlaceCamera();
  // What is cut shows more than the parts that have changed.
  const bool cut = !m_doc.GetSections().Planes().empty();
  const bool wasCut = std::exchange(m_wasCut, cut);
  std::array<double, 16> from{};
  std::copy_n(m_window->renderer->GetActiveCamera()->GetModelViewTransformMatrix()->GetData(), from.size(),
              from.begin());
  const bool moved = std::exchange(m_seenFrom, from) != from;
  const std::size_t faces = parts.FaceCount() + meshes.CellCount();
  if ((!changed && !moved) || !m_pace.WantsQuick(faces)) return false;
  // Parts and meshes share what can be drawn in time.
  const bool over =
      !moved && !std::exchange(m_picksChanged, false) && !meshesChanged && !cut && !wasCut && parts.CanDrawOver();
  const double share = static_cast<double>(m_pace.Faces()) / static_cast<double>(faces);
  const auto part = [share](std::size_t all) {
    return static_cast<std::size_t>(static_cast<double>(all) * share) + 1;
  };
  std::function<bool(const Bounds&)> wasSeen;
  if (over) {
    wasSeen = [depths = std::make_shared<SeenDepths>(*m_window->renderer)](const Bounds& box) {
      return depths->IsSeen(box);
    };
  }
  m_quickFaces = parts.BeginQuick(over ? m_pace.Faces() : part(parts.FaceCount()), over, wasSeen);
  if (!over) m_quickFaces += part(meshes.CellCount());
  meshes.BeginQuick(over ? 0 : part(meshes.CellCount()));
  m_window->renderer->SetPreserveColorBuffer(over ? 1 : 0);
  m_window->renderer->SetPreserveDepthBuffer(over ? 1 : 0);
  return true;
}

void ModelView::EndFrame(bool quick, qint64 milliseconds) {
  m_lastFrame = milliseconds;
  m_window->scene->NoteDrawn();
  if (!quick) return m_pace.DrewWhole(milliseconds, m_window->scene->FaceCount() + m_window->meshes->CellCount());
  m_window->scene->EndQuick();
  m_window->meshes->EndQuick();
  m_window->renderer->SetPreserveColorBuffer(0);
  m_window->renderer->SetPreserveDepthBuffer(0);
  m_pace.DrewQuick(milliseconds, m_quickFaces);
}

QImage ModelView::Render(QSize size) {
  if (!m_window->ready || size.isEmpty()) return {};
  constexpr qint64 kMostSmooth = 16'000'000;  // pixels; more of them would take gigabytes with their samples
  // What a picture of another size needs otherwise than the frames.
  struct Scope {
    explicit Scope(ModelView& owner) : view(owner) { view.makeCurrent(); }
    ~Scope() {
      view.m_window->painting = false;
      view.m_window->window->SetMultiSamples(samples);
      view.resizeGL(view.width(), view.height());
      view.doneCurrent();
    }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    ModelView& view;
    int samples = view.m_window->window->GetMultiSamples();
  };
  QImage picture;
  {
    const Scope scope(*this);
    QOpenGLFramebufferObject frame(size, QOpenGLFramebufferObject::Depth);
    if (!frame.isValid() || !frame.bind()) return {};
    if (m_dirty) {  // no frame has shown it yet
      m_window->scene->Update();
      m_window->meshes->Update();
      m_window->legend->Follow(m_window->meshes->Colours());
      m_window->picked->Update();
    }
    while (m_window->sections->Update()) {  // a frame leaves some of the cutting to the next ones
    }
    m_window->painting = true;
    if (qint64{size.width()} * size.height() > kMostSmooth) m_window->window->SetMultiSamples(0);
    m_window->window->SetSize(size.width(), size.height());
    PlaceCamera();
    Draw();
    picture = frame.toImage().convertToFormat(QImage::Format_RGB32);
  }
  // What is written over the picture stands at the same places of it: these count from its middle, by its height.
  const double scale = size.height() / static_cast<double>(std::max(height(), 1));
  QPainter painter(&picture);
  painter.translate((size.width() - width() * scale) / 2, 0);
  painter.scale(scale, scale);
  for (QWidget* over : std::initializer_list<QWidget*>{m_window->labels, m_window->cords, m_window->measured}) {
    if (over->isVisible()) over->render(&painter, {}, {}, QWidget::DrawChildren);
  }
  if (const QualityLegend& legend = *m_window->legend; legend.isVisible()) {  // at the right edge of any picture
    painter.resetTransform();
    painter.scale(scale, scale);
    painter.translate(size.width() / scale - (width() - legend.x()), legend.y());
    m_window->legend->render(&painter, {}, {}, QWidget::DrawChildren);
  }
  painter.resetTransform();
  const double side = CornerTriad::kSize * scale;
  CornerTriad::Draw(painter, QRectF(0, size.height() - side, side, side), m_doc.GetLooking().Camera());
  update();
  return picture;
}

// ---- mouse ----------------------------------------------------------------------------------------------

void ModelView::mousePressEvent(QMouseEvent* event) {
  setFocus();
  if (event->button() == Qt::LeftButton && m_window->handles->Grab(event->position())) return;
  m_mouse.Press(*event);
}

void ModelView::mouseReleaseEvent(QMouseEvent* event) {
  if (m_window->handles->IsHeld()) return m_window->handles->Release();
  const bool single = m_mouse.Release(*event);
  if (single && event->button() == Qt::RightButton)
    return m_window->picking->Menu(event->position(), event->globalPosition().toPoint());
  const bool clicked = single && event->button() == Qt::LeftButton;
  if (clicked && m_awaitsFace) return CutAt(event->position());
  if (clicked) m_window->picking->Click(event->position(), event->modifiers());
}

void ModelView::mouseMoveEvent(QMouseEvent* event) {
  if (event->buttons() == Qt::NoButton) {
    m_window->handles->Release();
    m_window->picking->Hover(event->position());
  } else {
    m_window->picking->EndHover();
  }
  if (m_window->handles->IsHeld()) return m_window->handles->DragTo(event->position());
  m_mouse.Move(*event);
}

void ModelView::leaveEvent(QEvent* event) {
  m_window->picking->EndHover();
  QOpenGLWidget::leaveEvent(event);
}

/// Whoever has the keys now may get the release of the buttons too.
void ModelView::focusOutEvent(QFocusEvent* event) {
  m_window->handles->Release();
  m_mouse.Drop();
  QOpenGLWidget::focusOutEvent(event);
}

void ModelView::wheelEvent(QWheelEvent* event) {
  m_window->picking->EndHover();
  m_mouse.Wheel(*event);
}

void ModelView::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Escape) return QOpenGLWidget::keyPressEvent(event);
  const bool awaited = m_mouse.AwaitsRectangle();
  m_mouse.Cancel();
  if (awaited) return;
  if (m_window->picking->Cancel()) return;
  if (!std::exchange(m_awaitsFace, false)) return m_window->picking->Clear();
  unsetCursor();
}

ViewPicking& ModelView::Picking() {
  return *m_window->picking;
}

void ModelView::AwaitFace() {
  m_awaitsFace = true;
  setCursor(Qt::CrossCursor);
}

/// A click beside all faces is no answer: the question stays until Escape.
void ModelView::CutAt(const QPointF& at) {
  const PickRay ray = RayAt(at);
  const auto plane =
      m_window->sections->PlaneOf(m_window->picking->Finder().At(ray, PickFilter::Whole, nullptr).record, ray);
  if (!plane) return;
  m_awaitsFace = false;
  unsetCursor();
  m_doc.GetSections().Add(*plane);
}

}  // namespace qd::workbench
