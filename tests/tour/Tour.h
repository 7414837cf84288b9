#pragma once

#include "lines/LineList.h"
#include "support/Operator.h"

/// The whole program at its real windows, played in a folder that holds its database and settings.
/// Leaves pictures of its screens and boxes there. What is played is for a derived class to plan.
class Tour : public Operator
{
public:
    explicit Tour(const QString &folder)
        : m_folder(folder)
    {
    }

    /// Plays it. Empty when all went well, else what did not.
    QString Run();

protected:
    virtual void Plan() = 0;

    /// Adds a step for the moment at which this window is in front and at rest.
    void AtRest(const QString &window, const QString &what, Action act);

    /// Such a step that begins with a picture, named after it.
    void Step(const QString &window, const QString &picture, const Action &act);

    /// Adds the step of naming a file of the folder.
    void PlanFile(const QString &name);

    static const LineList &Lines(); ///< of the answer list in front

    /// Takes a picture of the program's windows with their frames, as the operator sees them.
    void Shoot(const QString &name);

    QString Path(const QString &name) const { return m_folder + '/' + name; }

    /// What is saved of the screen.
    virtual QImage Cut(const QImage &screen) const;

private:
    QImage StillScreen();

    QString m_folder;
    int m_picture = 0;
};
