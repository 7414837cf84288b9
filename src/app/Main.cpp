#include "app/Main.h"

#include "answerlist/SC030110.h"
#include "app/CompanyLoading.h"
#include "data/DailyCheck.h"
#include "data/Tables.h"
#include "forms/Form.h"
#include "forms/WindowMemory.h"
#include "output/AnswerCreation.h"
#include "output/OutputFolders.h"
#include "platform/Log.h"
#include "platform/MsgBox.h"
#include "platform/System.h"
#include "search/SC030010.h"
#include "search/bTLName.h"
#include "util/VbText.h"

#include <QApplication>
#include <QFileInfo>
#include <QStatusBar>

namespace {

constexpr auto IniName = "\\TALVEN.INI";
constexpr auto DatabaseName = "\\TLDB0010.MDB";

QString WithoutTrailingBackslash(const QString &path)
{
    return path.endsWith('\\') ? path.chopped(1) : path;
}

void ShowStartError(const QString &text)
{
    qCCritical(LogStart).noquote() << OneLine(text);
    MsgBox(text, BoxStyle::Information, "初期設定エラー");
}

/// True for the user's only copy; else he is told what there is to tell.
bool IsOnlyCopy(const PreviousInstance &instance)
{
    if (instance.Is() == PreviousInstance::Unknown)
        ShowStartError("二重起動を確認できないため、\r"
                       "処理を続行できません。\r"
                       "\r"
                       "次のいずれかを、本人だけが使えるフォルダ（属性0700）にしてください。\r"
                       + PreviousInstance::Folders().join('\r'));
    if (instance.Is() == PreviousInstance::Second)
        qCCritical(LogStart) << "既に起動しています。同じ利用者が二つ起動することはできません";
    return instance.Is() == PreviousInstance::First;
}

/// The folder that holds the settings: the program's own, else the Windows directory.
QString FindIniDir(const QString &programDir)
{
    const QString dir = Files().FileExists(programDir + IniName) ? programDir : GetWindowsDir();
    return Trim(dir + IniName).isEmpty() ? programDir : dir;
}

/// The folder that holds the database; empty when there is none.
QString FindDatabaseDir(const Files &files, const IniFile &ini, const QString &programDir)
{
    const QString folders[]
        = {programDir, WithoutTrailingBackslash(ini.Value("PATH", "DBPATH_V4.1")),
           ini.Value("PATH", "DBPATH")};
    QStringList tried;
    for (const QString &folder : folders) {
        if (Trim(folder).isEmpty())
            continue;
        if (files.FileExists(folder + DatabaseName))
            return folder;
        tried += files.LocalPath(folder + DatabaseName);
    }
    qCCritical(LogStart).noquote()
        << "データベースが見つかりません。探した場所: " + tried.join("、");
    return {};
}

/// Tells of damage in the database in the status bar of whatever screen is open.
void ShowWarning(const QString &warning)
{
    for (QWidget *window : QApplication::topLevelWidgets())
        if (auto *bar = window->findChild<QStatusBar *>("stbMain"); bar && window->isVisible())
            SetPanelWarning(*bar, "MSG", warning);
}

} // namespace

bool InitApp(ProgramState &state, const QString &programDir)
{
    state.iniDir = FindIniDir(programDir);
    const QString iniPath = Files().LocalPath(state.iniDir + IniName);
    const IniFile ini = IniFile::Read(iniPath);
    if (ini.IsUnreadable()) {
        ShowStartError("設定ファイルを読み込めないため、\r"
                       "処理を続行できません。\r"
                       "\r"
                       "次のファイルの属性を確認してください。\r"
                       + iniPath);
        return false;
    }
    qCInfo(LogStart).noquote() << (QFileInfo::exists(iniPath) ? "設定ファイル: "
                                                              : "設定ファイルはありません: ")
                                      + iniPath;
    state.files = Files(DrivePaths(ini));
    const QString databaseDir = FindDatabaseDir(state.files, ini, programDir);
    if (databaseDir.isEmpty())
        return false;
    state.dbPath = WithoutTrailingBackslash(databaseDir);

    if (!state.db.OpenDB(state.files, state.dbPath + DatabaseName, false, ConnectText))
        return false;
    if (!state.db.CheckAccessVersion()) {
        qCCritical(LogStart) << "データベースが以前のバージョンです";
        EndApp(state);
        return false;
    }
    const QString executable = QFileInfo(QCoreApplication::applicationFilePath()).baseName();
    if (LoadCompany(state.db, executable, state.company))
        return true;
    ShowStartError("ｼｽﾃﾑ管理ﾏｽﾀに会社情報が登録されていないため、\r"
                   "処理を続行できません。\r"
                   "\r"
                   "ｼｽﾃﾑ管理ﾏｽﾀﾒﾝﾃﾅﾝｽで会社情報を登録してください。");
    EndApp(state);
    return false;
}

bool EndApp(ProgramState &state)
{
    state.db.CloseDB();
    return true;
}

void SetSearchDefaults(ProgramState &state)
{
    state.conditions = SearchConditions();
    state.conditions.customerCode = RTrim(state.company.DefCustCD);
    state.conditions.customerName = RTrim(CustomerName(state.db, state.conditions.customerCode));
}

void RunScreens(ProgramState &state)
{
    const auto makeAnswers = [&state](LineList &list, RowSelection &selected,
                                      const WriteStamp &stamp, const ShowStatusText &showStatus) {
        return AnswerCreation(state.db, state.files, list, selected, stamp, showStatus)
            .MakeAnswers();
    };
    for (;;) {
        SC030010(state).exec();
        state.isReloadNeeded = true;
        if (!state.isListRequested)
            return;
        SC030110(state, makeAnswers).exec();
    }
}

bool Main(const QString &programDir)
{
    TakeFileSizeLimitAsFullDisk();
    const PreviousInstance instance(ProgramId);
    ProgramState state;
    if (!IsOnlyCopy(instance) || !InitApp(state, programDir))
        return false;
    const bool isReady = CheckAnswerOutputPaths(state.db, state.files);
    if (isReady) {
        state.isSearchMode = true;
        SetSearchDefaults(state);
        const DailyCheck check(
            state.files.LocalPath(state.dbPath + DatabaseName), ConnectText, WindowMemory::File(),
            [&state](const QStringList &faults) {
                if (faults.isEmpty())
                    return;
                state.databaseWarning
                    = QString(
                          "データベースに壊れたところがあります（%1）。管理者に連絡してください")
                          .arg(faults.front().section(':', 0, 0));
                ShowWarning(state.databaseWarning);
            });
        RunScreens(state);
    } else {
        qCCritical(LogStart) << "回答ファイルを出力できないため、開始できません";
    }
    EndApp(state);
    qCInfo(LogStart) << "終了しました";
    return isReady;
}
