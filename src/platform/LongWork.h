#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <functional>

using ShowStatusText = std::function<void(const QString &text)>;

/// Long work with many pieces. While it lives, the window stays alive: it is painted and can be
/// moved, and the status bar shows how far the work is. Keys and mouse do nothing meanwhile, but
/// for Esc, which asks work that can be stopped to stop; the status bar says so.
class LongWork : private QObject
{
public:
    /// The time is looked at for every long piece, but for few of the small ones: looking takes
    /// longer than they do.
    enum class Pieces { Small, Long };

    enum class Stop { ByEsc, Never };

    /// `text` is the status text of the work, `total` the number of pieces (0: not known).
    LongWork(ShowStatusText showStatus, const QString &text, qint64 total = 0,
             Pieces pieces = Pieces::Small, Stop stop = Stop::ByEsc);

    /// Keys pressed to stop it are not for the box that comes next, and nothing can be stopped any
    /// more.
    ~LongWork() override;

    /// To be called for each piece. False once the operator has asked to stop.
    bool Step()
    {
        if (++m_done % m_stepsToLook == 0 && m_sinceLook.elapsed() >= LookMs)
            Look();
        return !m_isStopped;
    }

    bool IsStopped() const { return m_isStopped; }

    /// Whether there is any: what comes by another way than keys and mouse has to wait, too.
    static bool IsRunning() { return running > 0; }

private:
    static constexpr int LookMs = 50;

    void Look();
    QString Progress() const;
    bool eventFilter(QObject *object, QEvent *event) override;

    static inline int running = 0;

    const ShowStatusText m_showStatus;
    const QString m_text;
    const qint64 m_total;
    const int m_stepsToLook;
    const Stop m_stop;
    qint64 m_done = 0;
    bool m_isStopped = false;
    bool m_hasShown = false;
    QElapsedTimer m_sinceLook;
    QElapsedTimer m_sinceStart;
};
