#include "platform/toolkit/notification_centre.h"

#include <gmock/gmock.h>

#include <QStringList>

#include <memory>
#include <stdexcept>

using labelcut::Notification;
using labelcut::NotificationCentre;
using testing::ElementsAre;

namespace {

const QString kName = QStringLiteral("Happened");

class NotificationCentreTest : public testing::Test {
protected:
    NotificationCentre::Handler note(const std::string& who) {
        return [this, who](const Notification&) { heard.push_back(who); };
    }
    static QVariant about(QObject* object) { return QVariant::fromValue(object); }

    NotificationCentre centre;
    QObject observer;
    std::vector<std::string> heard;
};

TEST_F(NotificationCentreTest, DeliversBeforePostReturnsInTheOrderOfRegistration) {
    centre.addObserver(&observer, kName, {}, note("first"));
    centre.addObserver(&observer, kName, {}, note("second"));
    centre.post(kName, {});
    EXPECT_THAT(heard, ElementsAre("first", "second"));
}

TEST_F(NotificationCentreTest, TellsNameAndObject) {
    QObject subject;
    Notification received;
    centre.addObserver(&observer, kName, {}, [&](const Notification& n) { received = n; });
    centre.post(kName, about(&subject));
    EXPECT_EQ(received.name, kName);
    EXPECT_EQ(received.object.value<QObject*>(), &subject);
}

TEST_F(NotificationCentreTest, ComparesNamesExactly) {
    centre.addObserver(&observer, kName, {}, note("it"));
    centre.post(QStringLiteral("happened"), {});
    centre.post(QStringLiteral("Happened "), {});
    EXPECT_TRUE(heard.empty());
}

TEST_F(NotificationCentreTest, TellsObserversOfOneObjectNothingAboutOthers) {
    QObject mine;
    QObject other;
    centre.addObserver(&observer, kName, about(&mine), note("mine"));
    centre.addObserver(&observer, kName, {}, note("any"));
    centre.post(kName, about(&other));
    centre.post(kName, {});
    EXPECT_THAT(heard, ElementsAre("any", "any"));
    centre.post(kName, about(&mine));
    EXPECT_THAT(heard, ElementsAre("any", "any", "mine", "any"));
}

TEST_F(NotificationCentreTest, ForgetsAnObserverThatVanishes) {
    auto shortLived = std::make_unique<QObject>();
    centre.addObserver(shortLived.get(), kName, {}, note("gone"));
    EXPECT_EQ(centre.observerCount(), 1);
    shortLived.reset();
    EXPECT_EQ(centre.observerCount(), 0);
    centre.post(kName, {});
    EXPECT_TRUE(heard.empty());
}

TEST_F(NotificationCentreTest, ForgetsARegistrationWhoseObjectVanishes) {
    auto subject = std::make_unique<QObject>();
    centre.addObserver(&observer, kName, about(subject.get()), note("it"));
    subject.reset();
    EXPECT_EQ(centre.observerCount(), 0);
}

TEST_F(NotificationCentreTest, RemovesExactlyTheRegistrationNamed) {
    QObject subject;
    centre.addObserver(&observer, kName, {}, note("any"));
    centre.addObserver(&observer, kName, about(&subject), note("one"));
    centre.removeObserver(&observer, kName, {});
    centre.post(kName, about(&subject));
    EXPECT_THAT(heard, ElementsAre("one"));
}

TEST_F(NotificationCentreTest, DeliversAPostMadeWhilePostingBeforeTheOuterGoesOn) {
    const QString inner = QStringLiteral("Inner");
    centre.addObserver(&observer, kName, {}, [&](const Notification&) { centre.post(inner, {}); });
    centre.addObserver(&observer, kName, {}, note("outer"));
    centre.addObserver(&observer, inner, {}, note("inner"));
    centre.post(kName, {});
    EXPECT_THAT(heard, ElementsAre("inner", "outer"));
}

TEST_F(NotificationCentreTest, TellsAnObserverRegisteredWhilePostingOnlyOfTheNextPost) {
    centre.addObserver(&observer, kName, {}, [&](const Notification&) {
        centre.addObserver(&observer, kName, {}, note("late"));
    });
    centre.post(kName, {});
    EXPECT_TRUE(heard.empty());
    centre.post(kName, {});
    EXPECT_THAT(heard, ElementsAre("late"));
}

TEST_F(NotificationCentreTest, TellsAnObserverRemovedWhilePostingNothingMore) {
    QObject second;
    centre.addObserver(&observer, kName, {},
                       [&](const Notification&) { centre.removeObserver(&second, kName, {}); });
    centre.addObserver(&second, kName, {}, note("second"));
    centre.addObserver(&observer, kName, {}, note("third"));
    centre.post(kName, {});
    EXPECT_THAT(heard, ElementsAre("third"));
}

TEST_F(NotificationCentreTest, SurvivesAnObserverThatRemovesItself) {
    centre.addObserver(&observer, kName, {}, [this](const Notification&) {
        centre.removeObserver(&observer, kName, {});
        heard.push_back("once");
    });
    centre.post(kName, {});
    centre.post(kName, {});
    EXPECT_THAT(heard, ElementsAre("once"));
}

TEST_F(NotificationCentreTest, SurvivesAnObserverDestroyedByAnother) {
    auto victim = std::make_unique<QObject>();
    centre.addObserver(&observer, kName, {}, [&](const Notification&) { victim.reset(); });
    centre.addObserver(victim.get(), kName, {}, note("victim"));
    centre.addObserver(&observer, kName, {}, note("last"));
    centre.post(kName, {});
    EXPECT_THAT(heard, ElementsAre("last"));
}

TEST_F(NotificationCentreTest, PassesOnWhatAHandlerThrows) {
    centre.addObserver(&observer, kName, {},
                       [](const Notification&) { throw std::runtime_error("handler"); });
    EXPECT_THROW(centre.post(kName, {}), std::runtime_error);
}

TEST_F(NotificationCentreTest, HasOneDefaultCentre) {
    EXPECT_EQ(&NotificationCentre::defaultCentre(), &NotificationCentre::defaultCentre());
}

} // namespace
