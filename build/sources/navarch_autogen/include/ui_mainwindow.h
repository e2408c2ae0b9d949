/********************************************************************************
** Form generated from reading UI file 'mainwindow.ui'
**
** Created by: Qt User Interface Compiler version 5.15.8
**
** WARNING! All changes made in this file will be lost when recompiling UI file!
********************************************************************************/

#ifndef UI_MAINWINDOW_H
#define UI_MAINWINDOW_H

#include <QtCore/QVariant>
#include <QtGui/QIcon>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSpacerItem>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTextBrowser>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>
#include <QtWidgets/QWidget>

QT_BEGIN_NAMESPACE

class Ui_MainWindow
{
public:
    QAction *actionOpen;
    QAction *actionEdit;
    QAction *actionConversion;
    QAction *aboutAction;
    QAction *connectionOptionsAction;
    QAction *setFilterAction;
    QAction *actionSource;
    QAction *actionTarget;
    QAction *actionSelect_Different_by_Size;
    QAction *actionSelect_Different_by_Size_2;
    QAction *actionSelect_Different_by_Content;
    QAction *syncBrowserAction;
    QAction *actionFlat_List_View;
    QAction *actionShow_Dif_Files;
    QAction *syncViewAction;
    QAction *actionShow_Selected;
    QWidget *centralWidget;
    QVBoxLayout *centralLayout;
    QHBoxLayout *directionLayout;
    QLabel *label_2;
    QComboBox *sourceCombo;
    QToolButton *toolButtonOptionLeft;
    QLabel *directionArrowLabel;
    QComboBox *targetCombo;
    QToolButton *toolButtonOptionRight;
    QSpacerItem *directionSpacer;
    QSplitter *mainSplitter;
    QSplitter *panelSplitter;
    QWidget *leftSideWidget;
    QVBoxLayout *leftSideLayout;
    QHBoxLayout *leftButtonsLayout;
    QComboBox *leftDriveCombo;
    QPushButton *LeftRootPushButton;
    QPushButton *prevFolderLeftPushButton;
    QPushButton *openOppositeLeftButton;
    QPushButton *leftBrowseButton;
    QLabel *leftPathLabel;
    QVBoxLayout *leftPanelLayout;
    QWidget *rightSideWidget;
    QVBoxLayout *rightSideLayout;
    QHBoxLayout *rightButtonsLayout;
    QComboBox *rightDriveCombo;
    QPushButton *RightRootPushButton;
    QPushButton *prevFolderRightPushButton;
    QPushButton *openOppositeRightButton;
    QPushButton *rightBrowseButton;
    QLabel *rightPathLabel;
    QVBoxLayout *rightPanelLayout;
    QTabWidget *tabWidget;
    QWidget *SearchResultsTab;
    QVBoxLayout *searchResultsLayout;
    QTreeWidget *treeWidgetSearchResults;
    QWidget *LogViewTab;
    QVBoxLayout *logViewLayout;
    QTextBrowser *textEditLogView;
    QHBoxLayout *commandLayout;
    QLabel *labeDisk;
    QComboBox *comboBoxEditCommand;
    QPushButton *pushButtonView;
    QPushButton *pushButtonEdit;
    QPushButton *conversionButton;
    QPushButton *copyFilesButton;
    QPushButton *makeDirButton;
    QPushButton *removeButton;
    QPushButton *logViewButton;
    QLabel *labelProcessState;
    QMenuBar *menuBar;
    QMenu *menuNew;
    QMenu *menuCommand;
    QMenu *menuCommand_2;
    QMenu *menuView;
    QMenu *menuConversion;
    QMenu *menuOptions;
    QMenu *menuHelp;
    QToolBar *toolBar;
    QStatusBar *statusBar;

    void setupUi(QMainWindow *MainWindow)
    {
        if (MainWindow->objectName().isEmpty())
            MainWindow->setObjectName(QString::fromUtf8("MainWindow"));
        MainWindow->resize(1200, 800);
        actionOpen = new QAction(MainWindow);
        actionOpen->setObjectName(QString::fromUtf8("actionOpen"));
        actionEdit = new QAction(MainWindow);
        actionEdit->setObjectName(QString::fromUtf8("actionEdit"));
        actionConversion = new QAction(MainWindow);
        actionConversion->setObjectName(QString::fromUtf8("actionConversion"));
        aboutAction = new QAction(MainWindow);
        aboutAction->setObjectName(QString::fromUtf8("aboutAction"));
        connectionOptionsAction = new QAction(MainWindow);
        connectionOptionsAction->setObjectName(QString::fromUtf8("connectionOptionsAction"));
        setFilterAction = new QAction(MainWindow);
        setFilterAction->setObjectName(QString::fromUtf8("setFilterAction"));
        actionSource = new QAction(MainWindow);
        actionSource->setObjectName(QString::fromUtf8("actionSource"));
        actionTarget = new QAction(MainWindow);
        actionTarget->setObjectName(QString::fromUtf8("actionTarget"));
        actionSelect_Different_by_Size = new QAction(MainWindow);
        actionSelect_Different_by_Size->setObjectName(QString::fromUtf8("actionSelect_Different_by_Size"));
        actionSelect_Different_by_Size->setCheckable(true);
        actionSelect_Different_by_Size_2 = new QAction(MainWindow);
        actionSelect_Different_by_Size_2->setObjectName(QString::fromUtf8("actionSelect_Different_by_Size_2"));
        actionSelect_Different_by_Size_2->setCheckable(true);
        actionSelect_Different_by_Size_2->setVisible(false);
        actionSelect_Different_by_Content = new QAction(MainWindow);
        actionSelect_Different_by_Content->setObjectName(QString::fromUtf8("actionSelect_Different_by_Content"));
        actionSelect_Different_by_Content->setCheckable(true);
        syncBrowserAction = new QAction(MainWindow);
        syncBrowserAction->setObjectName(QString::fromUtf8("syncBrowserAction"));
        syncBrowserAction->setCheckable(true);
        actionFlat_List_View = new QAction(MainWindow);
        actionFlat_List_View->setObjectName(QString::fromUtf8("actionFlat_List_View"));
        actionFlat_List_View->setCheckable(true);
        actionShow_Dif_Files = new QAction(MainWindow);
        actionShow_Dif_Files->setObjectName(QString::fromUtf8("actionShow_Dif_Files"));
        syncViewAction = new QAction(MainWindow);
        syncViewAction->setObjectName(QString::fromUtf8("syncViewAction"));
        syncViewAction->setCheckable(true);
        actionShow_Selected = new QAction(MainWindow);
        actionShow_Selected->setObjectName(QString::fromUtf8("actionShow_Selected"));
        actionShow_Selected->setCheckable(true);
        centralWidget = new QWidget(MainWindow);
        centralWidget->setObjectName(QString::fromUtf8("centralWidget"));
        centralLayout = new QVBoxLayout(centralWidget);
        centralLayout->setObjectName(QString::fromUtf8("centralLayout"));
        directionLayout = new QHBoxLayout();
        directionLayout->setObjectName(QString::fromUtf8("directionLayout"));
        label_2 = new QLabel(centralWidget);
        label_2->setObjectName(QString::fromUtf8("label_2"));

        directionLayout->addWidget(label_2);

        sourceCombo = new QComboBox(centralWidget);
        sourceCombo->setObjectName(QString::fromUtf8("sourceCombo"));
        sourceCombo->setMinimumSize(QSize(220, 0));

        directionLayout->addWidget(sourceCombo);

        toolButtonOptionLeft = new QToolButton(centralWidget);
        toolButtonOptionLeft->setObjectName(QString::fromUtf8("toolButtonOptionLeft"));

        directionLayout->addWidget(toolButtonOptionLeft);

        directionArrowLabel = new QLabel(centralWidget);
        directionArrowLabel->setObjectName(QString::fromUtf8("directionArrowLabel"));

        directionLayout->addWidget(directionArrowLabel);

        targetCombo = new QComboBox(centralWidget);
        targetCombo->setObjectName(QString::fromUtf8("targetCombo"));
        targetCombo->setMinimumSize(QSize(220, 0));

        directionLayout->addWidget(targetCombo);

        toolButtonOptionRight = new QToolButton(centralWidget);
        toolButtonOptionRight->setObjectName(QString::fromUtf8("toolButtonOptionRight"));

        directionLayout->addWidget(toolButtonOptionRight);

        directionSpacer = new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum);

        directionLayout->addItem(directionSpacer);


        centralLayout->addLayout(directionLayout);

        mainSplitter = new QSplitter(centralWidget);
        mainSplitter->setObjectName(QString::fromUtf8("mainSplitter"));
        mainSplitter->setOrientation(Qt::Vertical);
        panelSplitter = new QSplitter(mainSplitter);
        panelSplitter->setObjectName(QString::fromUtf8("panelSplitter"));
        panelSplitter->setOrientation(Qt::Horizontal);
        leftSideWidget = new QWidget(panelSplitter);
        leftSideWidget->setObjectName(QString::fromUtf8("leftSideWidget"));
        leftSideLayout = new QVBoxLayout(leftSideWidget);
        leftSideLayout->setObjectName(QString::fromUtf8("leftSideLayout"));
        leftSideLayout->setContentsMargins(0, 0, 0, 0);
        leftButtonsLayout = new QHBoxLayout();
        leftButtonsLayout->setObjectName(QString::fromUtf8("leftButtonsLayout"));
        leftDriveCombo = new QComboBox(leftSideWidget);
        leftDriveCombo->setObjectName(QString::fromUtf8("leftDriveCombo"));
        leftDriveCombo->setMinimumSize(QSize(90, 0));

        leftButtonsLayout->addWidget(leftDriveCombo);

        LeftRootPushButton = new QPushButton(leftSideWidget);
        LeftRootPushButton->setObjectName(QString::fromUtf8("LeftRootPushButton"));
        LeftRootPushButton->setMaximumSize(QSize(32, 16777215));

        leftButtonsLayout->addWidget(LeftRootPushButton);

        prevFolderLeftPushButton = new QPushButton(leftSideWidget);
        prevFolderLeftPushButton->setObjectName(QString::fromUtf8("prevFolderLeftPushButton"));
        prevFolderLeftPushButton->setMaximumSize(QSize(32, 16777215));

        leftButtonsLayout->addWidget(prevFolderLeftPushButton);

        openOppositeLeftButton = new QPushButton(leftSideWidget);
        openOppositeLeftButton->setObjectName(QString::fromUtf8("openOppositeLeftButton"));
        openOppositeLeftButton->setMaximumSize(QSize(40, 16777215));

        leftButtonsLayout->addWidget(openOppositeLeftButton);

        leftBrowseButton = new QPushButton(leftSideWidget);
        leftBrowseButton->setObjectName(QString::fromUtf8("leftBrowseButton"));
        const QIcon icon = QIcon(QString::fromUtf8(":/images/search.png"));
        leftBrowseButton->setIcon(icon);
        leftBrowseButton->setMaximumSize(QSize(32, 16777215));

        leftButtonsLayout->addWidget(leftBrowseButton);

        leftPathLabel = new QLabel(leftSideWidget);
        leftPathLabel->setObjectName(QString::fromUtf8("leftPathLabel"));

        leftButtonsLayout->addWidget(leftPathLabel);

        leftButtonsLayout->setStretch(5, 1);

        leftSideLayout->addLayout(leftButtonsLayout);

        leftPanelLayout = new QVBoxLayout();
        leftPanelLayout->setObjectName(QString::fromUtf8("leftPanelLayout"));

        leftSideLayout->addLayout(leftPanelLayout);

        panelSplitter->addWidget(leftSideWidget);
        rightSideWidget = new QWidget(panelSplitter);
        rightSideWidget->setObjectName(QString::fromUtf8("rightSideWidget"));
        rightSideLayout = new QVBoxLayout(rightSideWidget);
        rightSideLayout->setObjectName(QString::fromUtf8("rightSideLayout"));
        rightSideLayout->setContentsMargins(0, 0, 0, 0);
        rightButtonsLayout = new QHBoxLayout();
        rightButtonsLayout->setObjectName(QString::fromUtf8("rightButtonsLayout"));
        rightDriveCombo = new QComboBox(rightSideWidget);
        rightDriveCombo->setObjectName(QString::fromUtf8("rightDriveCombo"));
        rightDriveCombo->setMinimumSize(QSize(90, 0));

        rightButtonsLayout->addWidget(rightDriveCombo);

        RightRootPushButton = new QPushButton(rightSideWidget);
        RightRootPushButton->setObjectName(QString::fromUtf8("RightRootPushButton"));
        RightRootPushButton->setMaximumSize(QSize(32, 16777215));

        rightButtonsLayout->addWidget(RightRootPushButton);

        prevFolderRightPushButton = new QPushButton(rightSideWidget);
        prevFolderRightPushButton->setObjectName(QString::fromUtf8("prevFolderRightPushButton"));
        prevFolderRightPushButton->setMaximumSize(QSize(32, 16777215));

        rightButtonsLayout->addWidget(prevFolderRightPushButton);

        openOppositeRightButton = new QPushButton(rightSideWidget);
        openOppositeRightButton->setObjectName(QString::fromUtf8("openOppositeRightButton"));
        openOppositeRightButton->setMaximumSize(QSize(40, 16777215));

        rightButtonsLayout->addWidget(openOppositeRightButton);

        rightBrowseButton = new QPushButton(rightSideWidget);
        rightBrowseButton->setObjectName(QString::fromUtf8("rightBrowseButton"));
        rightBrowseButton->setIcon(icon);
        rightBrowseButton->setMaximumSize(QSize(32, 16777215));

        rightButtonsLayout->addWidget(rightBrowseButton);

        rightPathLabel = new QLabel(rightSideWidget);
        rightPathLabel->setObjectName(QString::fromUtf8("rightPathLabel"));

        rightButtonsLayout->addWidget(rightPathLabel);

        rightButtonsLayout->setStretch(5, 1);

        rightSideLayout->addLayout(rightButtonsLayout);

        rightPanelLayout = new QVBoxLayout();
        rightPanelLayout->setObjectName(QString::fromUtf8("rightPanelLayout"));

        rightSideLayout->addLayout(rightPanelLayout);

        panelSplitter->addWidget(rightSideWidget);
        mainSplitter->addWidget(panelSplitter);
        tabWidget = new QTabWidget(mainSplitter);
        tabWidget->setObjectName(QString::fromUtf8("tabWidget"));
        SearchResultsTab = new QWidget();
        SearchResultsTab->setObjectName(QString::fromUtf8("SearchResultsTab"));
        searchResultsLayout = new QVBoxLayout(SearchResultsTab);
        searchResultsLayout->setObjectName(QString::fromUtf8("searchResultsLayout"));
        searchResultsLayout->setContentsMargins(0, 0, 0, 0);
        treeWidgetSearchResults = new QTreeWidget(SearchResultsTab);
        treeWidgetSearchResults->setObjectName(QString::fromUtf8("treeWidgetSearchResults"));

        searchResultsLayout->addWidget(treeWidgetSearchResults);

        tabWidget->addTab(SearchResultsTab, QString());
        LogViewTab = new QWidget();
        LogViewTab->setObjectName(QString::fromUtf8("LogViewTab"));
        logViewLayout = new QVBoxLayout(LogViewTab);
        logViewLayout->setObjectName(QString::fromUtf8("logViewLayout"));
        logViewLayout->setContentsMargins(0, 0, 0, 0);
        textEditLogView = new QTextBrowser(LogViewTab);
        textEditLogView->setObjectName(QString::fromUtf8("textEditLogView"));
        textEditLogView->setOpenLinks(false);
        textEditLogView->setOpenExternalLinks(false);

        logViewLayout->addWidget(textEditLogView);

        tabWidget->addTab(LogViewTab, QString());
        mainSplitter->addWidget(tabWidget);

        centralLayout->addWidget(mainSplitter);

        commandLayout = new QHBoxLayout();
        commandLayout->setObjectName(QString::fromUtf8("commandLayout"));
        labeDisk = new QLabel(centralWidget);
        labeDisk->setObjectName(QString::fromUtf8("labeDisk"));

        commandLayout->addWidget(labeDisk);

        comboBoxEditCommand = new QComboBox(centralWidget);
        comboBoxEditCommand->setObjectName(QString::fromUtf8("comboBoxEditCommand"));
        comboBoxEditCommand->setEditable(true);
        comboBoxEditCommand->setMinimumSize(QSize(200, 0));

        commandLayout->addWidget(comboBoxEditCommand);

        pushButtonView = new QPushButton(centralWidget);
        pushButtonView->setObjectName(QString::fromUtf8("pushButtonView"));

        commandLayout->addWidget(pushButtonView);

        pushButtonEdit = new QPushButton(centralWidget);
        pushButtonEdit->setObjectName(QString::fromUtf8("pushButtonEdit"));

        commandLayout->addWidget(pushButtonEdit);

        conversionButton = new QPushButton(centralWidget);
        conversionButton->setObjectName(QString::fromUtf8("conversionButton"));

        commandLayout->addWidget(conversionButton);

        copyFilesButton = new QPushButton(centralWidget);
        copyFilesButton->setObjectName(QString::fromUtf8("copyFilesButton"));

        commandLayout->addWidget(copyFilesButton);

        makeDirButton = new QPushButton(centralWidget);
        makeDirButton->setObjectName(QString::fromUtf8("makeDirButton"));

        commandLayout->addWidget(makeDirButton);

        removeButton = new QPushButton(centralWidget);
        removeButton->setObjectName(QString::fromUtf8("removeButton"));

        commandLayout->addWidget(removeButton);

        logViewButton = new QPushButton(centralWidget);
        logViewButton->setObjectName(QString::fromUtf8("logViewButton"));

        commandLayout->addWidget(logViewButton);

        labelProcessState = new QLabel(centralWidget);
        labelProcessState->setObjectName(QString::fromUtf8("labelProcessState"));
        labelProcessState->setMinimumSize(QSize(90, 0));

        commandLayout->addWidget(labelProcessState);

        commandLayout->setStretch(1, 1);

        centralLayout->addLayout(commandLayout);

        MainWindow->setCentralWidget(centralWidget);
        menuBar = new QMenuBar(MainWindow);
        menuBar->setObjectName(QString::fromUtf8("menuBar"));
        menuNew = new QMenu(menuBar);
        menuNew->setObjectName(QString::fromUtf8("menuNew"));
        menuCommand = new QMenu(menuBar);
        menuCommand->setObjectName(QString::fromUtf8("menuCommand"));
        menuCommand_2 = new QMenu(menuCommand);
        menuCommand_2->setObjectName(QString::fromUtf8("menuCommand_2"));
        menuView = new QMenu(menuBar);
        menuView->setObjectName(QString::fromUtf8("menuView"));
        menuConversion = new QMenu(menuBar);
        menuConversion->setObjectName(QString::fromUtf8("menuConversion"));
        menuOptions = new QMenu(menuBar);
        menuOptions->setObjectName(QString::fromUtf8("menuOptions"));
        menuHelp = new QMenu(menuBar);
        menuHelp->setObjectName(QString::fromUtf8("menuHelp"));
        MainWindow->setMenuBar(menuBar);
        toolBar = new QToolBar(MainWindow);
        toolBar->setObjectName(QString::fromUtf8("toolBar"));
        MainWindow->addToolBar(Qt::TopToolBarArea, toolBar);
        statusBar = new QStatusBar(MainWindow);
        statusBar->setObjectName(QString::fromUtf8("statusBar"));
        MainWindow->setStatusBar(statusBar);

        menuBar->addAction(menuNew->menuAction());
        menuBar->addAction(menuCommand->menuAction());
        menuBar->addAction(menuView->menuAction());
        menuBar->addAction(menuConversion->menuAction());
        menuBar->addAction(menuOptions->menuAction());
        menuBar->addAction(menuHelp->menuAction());
        menuCommand->addAction(menuCommand_2->menuAction());
        menuCommand->addAction(actionFlat_List_View);
        menuCommand->addAction(setFilterAction);
        menuCommand_2->addAction(actionOpen);
        menuCommand_2->addAction(actionEdit);
        menuCommand_2->addAction(actionConversion);
        menuView->addAction(syncBrowserAction);
        menuView->addAction(syncViewAction);
        menuView->addSeparator();
        menuView->addAction(actionSelect_Different_by_Size);
        menuView->addAction(actionSelect_Different_by_Content);
        menuView->addAction(actionShow_Selected);
        menuView->addSeparator();
        menuView->addAction(actionShow_Dif_Files);
        menuConversion->addAction(actionSource);
        menuConversion->addAction(actionTarget);
        menuOptions->addAction(connectionOptionsAction);
        menuHelp->addAction(aboutAction);

        retranslateUi(MainWindow);

        tabWidget->setCurrentIndex(0);


        QMetaObject::connectSlotsByName(MainWindow);
    } // setupUi

    void retranslateUi(QMainWindow *MainWindow)
    {
        MainWindow->setWindowTitle(QCoreApplication::translate("MainWindow", "MainWindow", nullptr));
        actionOpen->setText(QCoreApplication::translate("MainWindow", "View", nullptr));
        actionEdit->setText(QCoreApplication::translate("MainWindow", "Edit", nullptr));
        actionConversion->setText(QCoreApplication::translate("MainWindow", "Conversion", nullptr));
        aboutAction->setText(QCoreApplication::translate("MainWindow", "About", nullptr));
        connectionOptionsAction->setText(QCoreApplication::translate("MainWindow", "Connection...", nullptr));
        setFilterAction->setText(QCoreApplication::translate("MainWindow", "Set Filter", nullptr));
        actionSource->setText(QCoreApplication::translate("MainWindow", "Source", nullptr));
        actionTarget->setText(QCoreApplication::translate("MainWindow", "Target", nullptr));
        actionSelect_Different_by_Size->setText(QCoreApplication::translate("MainWindow", "Select Different by Size", nullptr));
        actionSelect_Different_by_Size_2->setText(QCoreApplication::translate("MainWindow", "Select Different by Size", nullptr));
        actionSelect_Different_by_Content->setText(QCoreApplication::translate("MainWindow", "Select Different by Content", nullptr));
        syncBrowserAction->setText(QCoreApplication::translate("MainWindow", "Sync Browser", nullptr));
        actionFlat_List_View->setText(QCoreApplication::translate("MainWindow", "Flat List View", nullptr));
        actionShow_Dif_Files->setText(QCoreApplication::translate("MainWindow", "Compare by Content", nullptr));
        syncViewAction->setText(QCoreApplication::translate("MainWindow", "Sync View", nullptr));
        actionShow_Selected->setText(QCoreApplication::translate("MainWindow", "Show Selected", nullptr));
        label_2->setText(QCoreApplication::translate("MainWindow", "Conversion:", nullptr));
        toolButtonOptionLeft->setText(QCoreApplication::translate("MainWindow", "...", nullptr));
#if QT_CONFIG(tooltip)
        toolButtonOptionLeft->setToolTip(QCoreApplication::translate("MainWindow", "Enter source details", nullptr));
#endif // QT_CONFIG(tooltip)
        directionArrowLabel->setText(QCoreApplication::translate("MainWindow", "\342\206\222", nullptr));
        toolButtonOptionRight->setText(QCoreApplication::translate("MainWindow", "...", nullptr));
#if QT_CONFIG(tooltip)
        toolButtonOptionRight->setToolTip(QCoreApplication::translate("MainWindow", "Enter target details", nullptr));
#endif // QT_CONFIG(tooltip)
        LeftRootPushButton->setText(QCoreApplication::translate("MainWindow", "/", nullptr));
#if QT_CONFIG(tooltip)
        LeftRootPushButton->setToolTip(QCoreApplication::translate("MainWindow", "Go to root directory", nullptr));
#endif // QT_CONFIG(tooltip)
        prevFolderLeftPushButton->setText(QCoreApplication::translate("MainWindow", "..", nullptr));
#if QT_CONFIG(tooltip)
        prevFolderLeftPushButton->setToolTip(QCoreApplication::translate("MainWindow", "Go to parent directory", nullptr));
#endif // QT_CONFIG(tooltip)
        openOppositeLeftButton->setText(QCoreApplication::translate("MainWindow", "<>", nullptr));
#if QT_CONFIG(tooltip)
        openOppositeLeftButton->setToolTip(QCoreApplication::translate("MainWindow", "Go to this directory on the right", nullptr));
#endif // QT_CONFIG(tooltip)
        leftPathLabel->setText(QCoreApplication::translate("MainWindow", "TextLabel", nullptr));
        RightRootPushButton->setText(QCoreApplication::translate("MainWindow", "/", nullptr));
#if QT_CONFIG(tooltip)
        RightRootPushButton->setToolTip(QCoreApplication::translate("MainWindow", "Go to root directory", nullptr));
#endif // QT_CONFIG(tooltip)
        prevFolderRightPushButton->setText(QCoreApplication::translate("MainWindow", "..", nullptr));
#if QT_CONFIG(tooltip)
        prevFolderRightPushButton->setToolTip(QCoreApplication::translate("MainWindow", "Go to parent directory", nullptr));
#endif // QT_CONFIG(tooltip)
        openOppositeRightButton->setText(QCoreApplication::translate("MainWindow", "<>", nullptr));
#if QT_CONFIG(tooltip)
        openOppositeRightButton->setToolTip(QCoreApplication::translate("MainWindow", "Go to this directory on the left", nullptr));
#endif // QT_CONFIG(tooltip)
        rightPathLabel->setText(QCoreApplication::translate("MainWindow", "TextLabel", nullptr));
        QTreeWidgetItem *___qtreewidgetitem = treeWidgetSearchResults->headerItem();
        ___qtreewidgetitem->setText(0, QCoreApplication::translate("MainWindow", "1", nullptr));
        tabWidget->setTabText(tabWidget->indexOf(SearchResultsTab), QCoreApplication::translate("MainWindow", "Search Results", nullptr));
        tabWidget->setTabText(tabWidget->indexOf(LogViewTab), QCoreApplication::translate("MainWindow", "Log View", nullptr));
        labeDisk->setText(QCoreApplication::translate("MainWindow", "Commands:", nullptr));
        pushButtonView->setText(QCoreApplication::translate("MainWindow", "F3 - View", nullptr));
        pushButtonEdit->setText(QCoreApplication::translate("MainWindow", "F4 - Edit", nullptr));
        conversionButton->setText(QCoreApplication::translate("MainWindow", "F5 - Convert", nullptr));
        copyFilesButton->setText(QCoreApplication::translate("MainWindow", "F6 - Copy", nullptr));
        makeDirButton->setText(QCoreApplication::translate("MainWindow", "F7 - Make Dir", nullptr));
        removeButton->setText(QCoreApplication::translate("MainWindow", "F8 - Remove", nullptr));
        logViewButton->setText(QCoreApplication::translate("MainWindow", "Log view", nullptr));
        labelProcessState->setText(QCoreApplication::translate("MainWindow", "Not Running", nullptr));
        menuNew->setTitle(QCoreApplication::translate("MainWindow", "File", nullptr));
        menuCommand->setTitle(QCoreApplication::translate("MainWindow", "Command", nullptr));
        menuCommand_2->setTitle(QCoreApplication::translate("MainWindow", "Command", nullptr));
        menuView->setTitle(QCoreApplication::translate("MainWindow", "View", nullptr));
        menuConversion->setTitle(QCoreApplication::translate("MainWindow", "Conversion", nullptr));
        menuOptions->setTitle(QCoreApplication::translate("MainWindow", "Options", nullptr));
        menuHelp->setTitle(QCoreApplication::translate("MainWindow", "Help", nullptr));
        toolBar->setWindowTitle(QCoreApplication::translate("MainWindow", "toolBar", nullptr));
    } // retranslateUi

};

namespace Ui {
    class MainWindow: public Ui_MainWindow {};
} // namespace Ui

QT_END_NAMESPACE

#endif // UI_MAINWINDOW_H
