// SPDX-License-Identifier: MIT
#include "app/welcome/WelcomeWindow.h"

#include "app/welcome/BehaviorSection.h"
#include "app/welcome/ChecklistRow.h"
#include "app/welcome/GeneralSection.h"
#include "app/welcome/ReadinessCard.h"
#include "app/welcome/WelcomeFooter.h"
#include "app/welcome/WelcomeHeader.h"
#include "app/welcome/columns.h"
#include "app/welcome/labels.h"
#include "app/welcome/noticeCards.h"
#include "filesystem/FileUrls.h"
#include "platform/SystemWords.h"
#include "style/VelmoraPalette.h"

#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr QSize contentSize(620, 886);
constexpr int sideMargin = 28;
constexpr int topMargin = 26;
constexpr int bottomMargin = 20;
constexpr int leastSectionSpacing = 12;

QWidget *readinessCards(const WelcomeState &state)
{
    const QString folderName = FileUrls::lastPathComponent(state.folder);
    auto *cards = new QWidget;
    QGridLayout *columns = makeColumns(cards);
    columns->addWidget(
        new ReadinessCard(u"Instant"_s,
                          state.instantModeOn ? SystemWords::instantIsOn.here()
                                              : SystemWords::instantIsOff.here(),
                          u"bolt.fill"_s,
                          state.instantModeOn ? VelmoraPalette::teal() : VelmoraPalette::amber()),
        0, 0);
    columns->addWidget(new ReadinessCard(u"Private"_s, u"Local naming only"_s, u"lock.fill"_s,
                                         VelmoraPalette::teal()),
                       0, 1);
    columns->addWidget(new ReadinessCard(u"Folder"_s,
                                         folderName.isEmpty() ? u"Selected"_s : folderName,
                                         u"folder.fill"_s, VelmoraPalette::blue()),
                       0, 2);
    return cards;
}

QWidget *setupChecklist(const WelcomeState &state)
{
    const QString folderName = FileUrls::lastPathComponent(state.folder);
    auto *checklist = new QWidget;
    auto *rows = new QVBoxLayout(checklist);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(7);
    rows->addWidget(sectionLabel(u"Setup checklist"_s));
    rows->addWidget(new ChecklistRow(state.instantModeOn ? u"Instant screenshots are on"_s
                                                         : u"Turn on instant screenshots"_s,
                                     {}, state.instantModeOn));
    rows->addWidget(new ChecklistRow(u"Screenshot folder selected"_s,
                                     folderName.isEmpty() ? state.folder.toLocalFile() : folderName,
                                     true));
    rows->addWidget(new ChecklistRow(u"Smart naming is active"_s, {}, true));
    rows->addWidget(new ChecklistRow(SystemWords::screenshotsStay.here(), {}, true));
    return checklist;
}

} // namespace

WelcomeWindow::WelcomeWindow(const WelcomeState &state, QWidget *parent)
    : FloatingWindow(u"Velmora"_s, Qt::WindowMinimizeButtonHint, parent)
    , m_scrollArea(new QScrollArea)
{
    WelcomeState shown = state;
    shown.folder = FileUrls::standardized(state.folder);
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setWidget(makeContent(shown));

    auto *footer = new WelcomeFooter(shown.folder.toLocalFile());
    connectFooter(*footer);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_scrollArea, 1);
    column->addWidget(footer);
    setFixedSize(contentSize);
    m_scrollArea->widget()->setMinimumHeight(contentSize.height() - footer->sizeHint().height());
}

QWidget *WelcomeWindow::makeContent(const WelcomeState &state)
{
    auto *general = new GeneralSection(state);
    auto *behavior = new BehaviorSection;
    connectGeneral(*general);
    connectBehavior(*behavior);

    auto *content = new QWidget;
    auto *sections = new QVBoxLayout(content);
    sections->setSpacing(0);
    const QList<QWidget *> topToBottom = {new WelcomeHeader(state.instantModeOn),
                                          readinessCards(state),
                                          privacyCard(),
                                          setupChecklist(state),
                                          permissionsCard(state.limits),
                                          general,
                                          behavior};
    for (QWidget *section : topToBottom) {
        if (section != topToBottom.first()) {
            sections->addSpacing(leastSectionSpacing);
            sections->addStretch(1);
        }
        sections->addWidget(section);
    }
    return content;
}

void WelcomeWindow::connectGeneral(const GeneralSection &general)
{
    connect(&general, &GeneralSection::instantModeRequested, this,
            &WelcomeWindow::instantModeRequested);
    connect(&general, &GeneralSection::startAtLoginChanged, this,
            &WelcomeWindow::startAtLoginChanged);
    connect(&general, &GeneralSection::changeFolderRequested, this,
            &WelcomeWindow::changeFolderRequested);
}

void WelcomeWindow::connectBehavior(const BehaviorSection &behavior)
{
    connect(&behavior, &BehaviorSection::copyBehaviorPicked, this,
            &WelcomeWindow::copyBehaviorPicked);
    connect(&behavior, &BehaviorSection::trayDurationPicked, this,
            &WelcomeWindow::trayDurationPicked);
    connect(&behavior, &BehaviorSection::trayPositionPicked, this,
            &WelcomeWindow::trayPositionPicked);
}

void WelcomeWindow::connectFooter(const WelcomeFooter &footer)
{
    connect(&footer, &WelcomeFooter::recentScreenshotsRequested, this,
            &WelcomeWindow::recentScreenshotsRequested);
    connect(&footer, &WelcomeFooter::doneRequested, this, &WelcomeWindow::doneRequested);
    connect(&footer, &WelcomeFooter::feedbackRequested, this, &WelcomeWindow::feedbackRequested);
}

void WelcomeWindow::setVisible(bool visible)
{
    const bool appears = visible && !isVisible();
    FloatingWindow::setVisible(visible);
    // No control has the focus until the user moves it there: a stray key must not change a
    // setting.
    if (appears)
        setFocus();
}

/// On a screen that is too low for all of it, the window is lower and its content scrolls, laid out
/// as on a higher screen.
void WelcomeWindow::fitInto(const QSize &room)
{
    const bool scrolls = room.height() < contentSize.height();
    setFixedSize(contentSize.width(), scrolls ? room.height() : contentSize.height());
    // The scroll bar is in the margin.
    const int scrollBarWidth = scrolls ? m_scrollArea->verticalScrollBar()->sizeHint().width() : 0;
    m_scrollArea->widget()->layout()->setContentsMargins(sideMargin, topMargin,
                                                         sideMargin - scrollBarWidth, bottomMargin);
}
