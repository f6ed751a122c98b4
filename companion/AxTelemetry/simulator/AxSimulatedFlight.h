#pragma once

#include <AxTelemetry/simulator/AxSimulatedMission.h>
#include <AxTelemetry/simulator/AxSimulatedVehicle.h>

#include <QString>

#include <deque>

/// What a simulated vehicle does and is; AxSimulatedVehicle.h tells it from outside.
class AxSimulatedVehicle::Flight
{
public:
    explicit Flight(const AxSimulatedAircraft& given);

    QString SetMission(const AxMission& carried);
    bool SetCurrentItem(int item);
    QString Arm();
    QString Disarm();
    QString Start();
    void ReturnHome();
    void LandAt(const AxPlace& place);
    void Step(double seconds);

    AxSimulatedAircraft aircraft;
    AxSimulatedState state;
    AxSimulatedMission mission;
    std::optional<AxPlace> home;
    std::vector<AxSimulatedEvent> events;

private:
    using Phase = AxSimulatedState::Phase;

    // What flies (AxSimulatedFlight.cpp)
    void pass(double seconds);
    void takeOff(double seconds);
    void followLegs(double seconds);
    void land(double seconds);
    void touchDown();
    void drain(double seconds);
    void tell();

    // What is flown (AxSimulatedPlan.cpp)
    QString knowHome(const AxMission& carried);
    void advance();
    bool fly(const AxMissionItem& item, int index);
    void obey(const AxMissionItem& item, int index);
    void begin(AxSimulatedLeg leg);
    void landAt(const AxPlace& place, double height);
    void takePhotos(const AxPlace& before);
    void takePhoto(const AxPlace& place);
    AxPlace placeOf(const AxMissionItem& item) const;
    double groundBelow(const AxPlace& place) const;
    double groundHere();
    void say(int severity, const QString& text);

    AxSimulatedBody m_body;
    AxSimulatedGuide m_guide;
    std::deque<AxSimulatedLeg> m_legs; // behind the one that is flown, none of them of the mission
    double m_speed = 0.0;              // m/s that is flown at present
    double m_takeOffHeight = 0.0;      // metres above home
    double m_photoDistance = 0.0;      // metres; 0 takes none
    std::optional<AxPlace> m_lastPhoto;
    AxPlace m_asked; // where the ground was asked for last
    double m_groundThere = 0.0;
    bool m_hasAsked = false;
    bool m_trustsGround = true;
    AxPlace m_landing;       // where it lands, on the ground
    double m_delay = 0.0;    // seconds of waiting that are left
    double m_onGround = 0.0; // seconds it has stood since it landed
    bool m_isHovering = true;
    bool m_isLow = false; // its battery has been told of
    bool m_isEmpty = false;
    bool m_isOver = false; // the place where it lands is below or behind it
};

/// A text of this folder in the language of the program.
QString AxSimulatorText(const char* text);
