#include "mission/landing/CAxDownhillAnglenode.h"

CAxDownhillAnglenode::CAxDownhillAnglenode(QObject* parent) : QObject(parent) {}

CAxDownhillAnglenode::~CAxDownhillAnglenode() = default;
