#include "host/offline/OfflineBox.h"
#include "host/offline/OfflineServices.h"
#include "host/tasks/LimitedNumber.h"
#include "viewer/CAxEarthViewer.h"

#include <AxAlgorthm/AxUnits.h>
#include <AxBaseUI/CAxMessageBox.h>

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {
/// So many are asked about; they are some hours of most services.
constexpr qint64 tilesToAskAbout = 20000;
constexpr int recountMs = 500;
constexpr int usualMargin = 200;
constexpr int barSteps = 1000;

// As high as its longest message from the start on, so that nothing moves below the mouse.
QLabel* Line(const char* name, int lines)
{
    auto* label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    const QFontMetrics font = label->fontMetrics();
    label->setFixedHeight(lines * font.lineSpacing() + font.descent());
    return label;
}
} // namespace

OfflineBox::OfflineBox(CAxEarthViewer* earthViewer, QWidget* parent)
    : CAxBaseDialog(parent), viewer(earthViewer), saver(new OfflineSaver(this)), service(new QComboBox),
      address(new QLineEdit), attribution(new QLineEdit), ground(new QButtonGroup(this)),
      margin(new LimitedNumber), rectangle(new QLineEdit), firstLevel(new QSpinBox), lastLevel(new QSpinBox),
      pixel(new QLabel), file(new QLineEdit), retry(new QCheckBox(tr("Ask a&gain for missing tiles"))),
      count(Line("OfflineCount", 3)), guess(new QPushButton(tr("&Estimate size"))), bar(new QProgressBar),
      state(Line("OfflineState", 3))
{
    setObjectName(QStringLiteral("OfflineBox"));
    // The map is moved and blocks are chosen meanwhile.
    setWindowModality(Qt::NonModal);
    SetWindowTitle(tr("Save area for use without network"));
    SetBtnOKText(tr("Save"));
    auto* form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    BuildService(form);
    BuildGround(form);
    BuildFile(form);
    ContentLayout()->addLayout(form);
    BuildState();
    inputs = {service, address, attribution, margin, rectangle, firstLevel, lastLevel, file, retry, guess};
    for (QAbstractButton* button : ground->buttons())
        inputs += button;
    constexpr int widthInLetters = 80;
    setMinimumWidth(fontMetrics().averageCharWidth() * widthInLetters);

    recount.setInterval(recountMs);
    connect(&recount, &QTimer::timeout, this, &OfflineBox::Count);
    connect(saver, &OfflineSaver::Progressed, this, &OfflineBox::OnProgress);
    connect(saver, &OfflineSaver::Ended, this, &OfflineBox::OnEnded);
    connect(saver, &OfflineSaver::Estimated, this, [this](const AxTileGuess& found) {
        tally.SetGuess(found);
        ShowGuess(found.why);
        ShowBusy();
        Count();
    });
}

OfflineBox::~OfflineBox() = default;

void OfflineBox::BuildService(QFormLayout* form)
{
    service->setObjectName(QStringLiteral("OfflineService"));
    address->setObjectName(QStringLiteral("OfflineAddress"));
    address->setToolTip(
        tr("{z} level, {x} column, {y} row from the north, {-y} row from the south, {s} one of "
           "the hosts a, b, c. The service has to be in Web Mercator."));
    attribution->setToolTip(tr("Whose pictures they are; kept in the file"));
    form->addRow(tr("Ser&vice"), service);
    form->addRow(tr("&Address"), address);
    form->addRow(tr("A&ttribution"), attribution);
    connect(service, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &OfflineBox::OnService);
    connect(address, &QLineEdit::textEdited, this, [this] {
        tally.ForgetGuess();
        ShowGuess({});
    });
}

void OfflineBox::BuildGround(QFormLayout* form)
{
    const AxUnits::Unit unit = AxUnits::OfWidths();
    constexpr double mostMargin = 20000.0;
    margin->setLocale(QLocale::c());
    margin->setDecimals(0);
    margin->setRange(0.0, std::floor(mostMargin / unit.size));
    margin->setSuffix(QLatin1Char(' ') + unit.sign);
    margin->setValue(usualMargin / unit.size);
    margin->setAccessibleName(tr("Margin around the block"));
    rectangle->setObjectName(QStringLiteral("OfflineRectangle"));
    rectangle->setToolTip(tr("west,south,east,north in degrees"));
    const QStringList names{tr("What the &map shows"), tr("The &block in hand, and around it"),
                            tr("&Rectangle")};
    auto* column = new QVBoxLayout;
    for (int i = 0; i < names.size(); ++i) {
        auto* choice = new QRadioButton(names[i]);
        ground->addButton(choice, i);
        auto* row = new QHBoxLayout;
        row->addWidget(choice);
        if (i == Block)
            row->addWidget(margin);
        else if (i == Rectangle)
            row->addWidget(rectangle, 1);
        if (i != Rectangle)
            row->addStretch();
        column->addLayout(row);
    }
    ground->button(View)->setChecked(true);
    form->addRow(tr("Area"), column);
    for (QSpinBox* level : {firstLevel, lastLevel}) {
        level->setRange(0, axMostTileLevel);
        // The 1 of a 15 is no level that the other one has to follow.
        level->setKeyboardTracking(false);
    }
    firstLevel->setObjectName(QStringLiteral("OfflineFirstLevel"));
    lastLevel->setObjectName(QStringLiteral("OfflineLastLevel"));
    firstLevel->setAccessibleName(tr("Coarsest level"));
    lastLevel->setAccessibleName(tr("Finest level"));
    auto* levels = new QHBoxLayout;
    levels->addWidget(firstLevel);
    levels->addWidget(new QLabel(tr("to")));
    levels->addWidget(lastLevel);
    levels->addWidget(pixel, 1);
    form->addRow(tr("&Levels"), levels);
    if (auto* label = qobject_cast<QLabel*>(form->labelForField(levels)))
        label->setBuddy(firstLevel);
    firstLevel->setValue(8);
    lastLevel->setValue(15);
    connect(ground, &QButtonGroup::idClicked, this, &OfflineBox::Count);
    connect(rectangle, &QLineEdit::textEdited, this, [this] { ground->button(Rectangle)->setChecked(true); });
    connect(firstLevel, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this](int level) { lastLevel->setValue(std::max(level, lastLevel->value())); });
    connect(lastLevel, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this](int level) { firstLevel->setValue(std::min(level, firstLevel->value())); });
}

void OfflineBox::BuildFile(QFormLayout* form)
{
    file->setObjectName(QStringLiteral("OfflineFile"));
    auto* choose = new QPushButton(tr("&Choose..."));
    choose->setAutoDefault(false);
    inputs += choose;
    auto* row = new QHBoxLayout;
    row->addWidget(file, 1);
    row->addWidget(choose);
    form->addRow(tr("&File"), row);
    if (auto* label = qobject_cast<QLabel*>(form->labelForField(row)))
        label->setBuddy(file);
    connect(choose, &QPushButton::clicked, this, &OfflineBox::ChooseFile);
    retry->setObjectName(QStringLiteral("OfflineRetry"));
    retry->setToolTip(tr("Tiles that the service did not have when the file was fetched"));
    form->addRow(QString(), retry);
}

void OfflineBox::BuildState()
{
    guess->setAutoDefault(false);
    guess->setObjectName(QStringLiteral("OfflineEstimate"));
    connect(guess, &QPushButton::clicked, this, &OfflineBox::Guess);
    auto* terms = Line("OfflineTerms", 2);
    terms->setText(tr("Whether tiles may be saved is in the terms of use of the service; many forbid it."));
    auto* row = new QHBoxLayout;
    row->addWidget(terms, 1);
    row->addWidget(guess);
    ContentLayout()->addWidget(count);
    ContentLayout()->addLayout(row);
    bar->setObjectName(QStringLiteral("OfflineBar"));
    bar->setRange(0, barSteps);
    ContentLayout()->addWidget(bar);
    ContentLayout()->addWidget(state);
    QSizePolicy policy = bar->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    bar->setSizePolicy(policy);
    bar->hide();
}

void OfflineBox::Open()
{
    if (!saver->IsBusy()) {
        const QString former = address->text();
        services = Offline::ServicesOf(viewer);
        const QSignalBlocker quiet(service);
        service->clear();
        for (const AxTileService& one : qAsConst(services))
            service->addItem(one.name);
        service->addItem(tr("Another one"));
        const auto same = std::find_if(services.begin(), services.end(),
                                       [&](const AxTileService& one) { return one.address == former; });
        const bool isTyped = !former.isEmpty() && same == services.end();
        service->setCurrentIndex(
            isTyped ? services.size()
                    : static_cast<int>(same == services.end() ? 0 : same - services.begin()));
        OnService();
        if (file->text().isEmpty())
            file->setText(QDir::toNativeSeparators(
                QDir(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
                    .filePath(tr("area") + QStringLiteral(".mbtiles"))));
    }
    ShowBusy();
    recount.start();
    show();
    raise();
    activateWindow();
    Count();
}

void OfflineBox::OnService()
{
    const int chosen = service->currentIndex();
    const bool isOfMap = chosen >= 0 && chosen < services.size();
    address->setReadOnly(isOfMap);
    if (isOfMap) {
        address->setText(services[chosen].address);
    }
    const int finest = isOfMap ? services[chosen].lastLevel : axMostTileLevel;
    firstLevel->setMaximum(finest);
    lastLevel->setMaximum(finest);
    tally.ForgetGuess();
    ShowGuess({});
    Count();
}

void OfflineBox::ChooseFile()
{
    // A file that is there is gone on with, not replaced.
    QString chosen =
        QFileDialog::getSaveFileName(this, tr("Save area for use without network"), file->text(),
                                     tr("Tiles (*.mbtiles)"), nullptr, QFileDialog::DontConfirmOverwrite);
    if (chosen.isEmpty())
        return;
    if (QFileInfo(chosen).suffix().isEmpty())
        chosen += QStringLiteral(".mbtiles");
    file->setText(QDir::toNativeSeparators(chosen));
    Count();
}

std::optional<AxTileArea> OfflineBox::Area(QString& why) const
{
    std::optional<AxTileArea> area;
    if (ground->checkedId() == View) {
        if (const std::optional<AxTileBounds> seen = Offline::SeenGround(viewer))
            area = AxTileArea::OfRectangle(*seen);
        why = tr("The map shows no ground now.");
    } else if (ground->checkedId() == Block) {
        area = Offline::AroundBlock(viewer, margin->value() * AxUnits::OfWidths().size);
        why = tr("No block is in hand: click one on the map or in the list.");
    } else {
        area = AxTileArea::OfText(rectangle->text());
        why = tr("A rectangle is west,south,east,north in degrees, as in -105.3,37.2,-104.8,37.6.");
    }
    return area;
}

std::optional<AxTileJob> OfflineBox::Job(QString& why) const
{
    const std::optional<AxTileArea> area = Area(why);
    if (!area)
        return {};
    AxTileJob job;
    job.area = *area;
    const int chosen = service->currentIndex();
    job.service.name = service->currentText();
    job.service.address = address->text().trimmed();
    job.service.attribution = attribution->text();
    if (chosen >= 0 && chosen < services.size())
        job.service.lastLevel = services[chosen].lastLevel;
    job.firstLevel = firstLevel->value();
    job.lastLevel = lastLevel->value();
    job.file = QDir::fromNativeSeparators(file->text().trimmed());
    job.mostTiles = axMostTilesOfJob;
    job.isMissingAskedAgain = retry->isEnabled() && retry->isChecked();
    why = AxTileJobFault(job);
    const QFileInfo target(job.file);
    if (why.isEmpty() && target.isRelative())
        why = tr("The file needs a folder.");
    else if (why.isEmpty() && !target.absoluteDir().exists())
        why = tr("There is no folder \"%1\".").arg(QDir::toNativeSeparators(target.absolutePath()));
    if (!why.isEmpty())
        return {};
    return job;
}

void OfflineBox::Count()
{
    if (!isVisible() || saver->IsFetching())
        return;
    QString why;
    const std::optional<AxTileJob> job = Job(why);
    pixel->clear();
    if (!job) {
        count->setText(why);
    } else {
        tally.Look(*job);
        count->setText(tally.Text());
        pixel->setText(tally.PixelText());
    }
    const bool isFine = job && !saver->IsBusy();
    OKButton()->setEnabled(isFine && tally.File().fault.isEmpty());
    guess->setEnabled(job && !saver->IsFetching());
    retry->setEnabled(isFine && tally.File().missing > 0);
}

void OfflineBox::Guess()
{
    QString why;
    const std::optional<AxTileJob> job = Job(why);
    if (!job || saver->IsBusy())
        return;
    ShowGuess(tr("A few tiles are asked for..."));
    saver->Estimate(*job);
    ShowBusy();
}

void OfflineBox::ShowGuess(const QString& text)
{
    // How a job has ended stays until something else is to be told.
    if (saver->IsFetching() || (text.isEmpty() && !isGuessShown))
        return;
    isGuessShown = !text.isEmpty();
    state->setText(text);
}

bool OfflineBox::MayBegin(const AxTileJob& job)
{
    const qint64 tiles = job.area.Count(job.firstLevel, job.lastLevel);
    if (tiles <= tilesToAskAbout)
        return true;
    CAxMessageBox box(this);
    box.SetIcon(QStringLiteral(":/images/Normal/Exclamation_mark.png"));
    box.SetWindowTitle(tr("Save area for use without network"));
    box.SetMsgText(
        tr("These are %1 tiles, which take long and burden the service. A level less has a quarter of "
           "them. Do you want to fetch them all?")
            .arg(OfflineTally::Number(tiles)));
    box.SetBtnOKText(tr("Fetch"));
    box.SetCancelDefault(true);
    const QPointer<OfflineBox> guard(this);
    const bool isWanted = box.exec() == QDialog::Accepted;
    return guard && isWanted;
}

void OfflineBox::slotBtnAcceptClicked()
{
    QString why;
    const std::optional<AxTileJob> job = Job(why);
    if (!job || saver->IsFetching() || !AxLookAtTileFile(*job).fault.isEmpty())
        return Count();
    if (!MayBegin(*job))
        return;
    saver->CallOff();
    saving = job->file;
    bar->setValue(0);
    isGuessShown = false;
    state->setText(tr("Looking at what is there..."));
    saver->Fetch(*job);
    ShowBusy();
    emit TypedChanged();
}

void OfflineBox::slotBtnCancelClicked()
{
    if (saver->IsFetching())
        saver->CallOff();
    else
        slotBtnCloseClicked();
}

void OfflineBox::slotBtnCloseClicked()
{
    recount.stop();
    if (saver->IsFetching())
        emit Told(tr("Saving of %1 goes on; the same menu entry shows how far it is.")
                      .arg(QFileInfo(saving).fileName()));
    hide();
    emit TypedChanged();
}

void OfflineBox::ShowBusy()
{
    const bool isFetching = saver->IsFetching();
    for (QWidget* input : qAsConst(inputs))
        input->setEnabled(!isFetching);
    OKButton()->setEnabled(!saver->IsBusy());
    // While it estimates, too: the focus would go on to "Close", and Enter with it.
    guess->setEnabled(!isFetching);
    SetBtnCancelText(isFetching ? tr("Stop") : tr("Close"));
    if (isFetching)
        bar->show();
}

void OfflineBox::OnProgress(const AxTileProgress& progress)
{
    bar->setValue(progress.all > 0 ? static_cast<int>(progress.Done() * barSteps / progress.all) : 0);
    state->setText(OfflineTally::ProgressText(progress));
}

void OfflineBox::OnEnded(AxTileEnd end, const QString& why, const AxTileProgress& progress)
{
    OnProgress(progress);
    // What could not be had is not done.
    if (progress.all > 0)
        bar->setValue(static_cast<int>((progress.Done() - progress.unusable) * barSteps / progress.all));
    // What is missing after that was asked for twice; going on does not begin with it once more.
    retry->setChecked(false);
    const QString text = OfflineTally::EndText(QFileInfo(saving).fileName(), end, why, progress);
    state->setText(text);
    ShowBusy();
    Count();
    emit Told(text.simplified());
    if (progress.kept + progress.fetched > 0)
        emit Saved(saving);
}

QByteArray OfflineBox::Typed() const
{
    const QJsonObject typed{
        {QStringLiteral("address"), address->text()},
        {QStringLiteral("attribution"), attribution->text()},
        {QStringLiteral("rectangle"), rectangle->text()},
        {QStringLiteral("ground"), ground->checkedId()},
        {QStringLiteral("margin"), margin->value() * AxUnits::OfWidths().size},
        {QStringLiteral("first"), firstLevel->value()},
        {QStringLiteral("last"), lastLevel->value()},
        {QStringLiteral("file"), file->text()},
    };
    return QJsonDocument(typed).toJson(QJsonDocument::Compact);
}

void OfflineBox::SetTyped(const QByteArray& text)
{
    const QJsonObject typed = QJsonDocument::fromJson(text).object();
    for (const auto& [key, line] : {std::pair<const char*, QLineEdit*>{"address", address},
                                    {"attribution", attribution},
                                    {"rectangle", rectangle},
                                    {"file", file}})
        line->setText(typed[QLatin1String(key)].toString());
    if (QAbstractButton* choice = ground->button(typed[QStringLiteral("ground")].toInt()))
        choice->setChecked(true);
    margin->setValue(typed[QStringLiteral("margin")].toDouble(usualMargin) / AxUnits::OfWidths().size);
    firstLevel->setValue(typed[QStringLiteral("first")].toInt(firstLevel->value()));
    lastLevel->setValue(typed[QStringLiteral("last")].toInt(lastLevel->value()));
}
