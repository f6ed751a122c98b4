#include "mission/CAxDownhillAnglenode.h"

CAxDownhillAnglenode::CAxDownhillAnglenode(QObject* parent) : QObject(parent) {}

CAxDownhillAnglenode::~CAxDownhillAnglenode() = default;
