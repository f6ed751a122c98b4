#include "interaction/CAxHandleAdapterEditor.h"
#include "interaction/CAxHandleAdapter.h"

CAxHandleAdapterEditor::CAxHandleAdapterEditor(CAxHandleAdapter* adapter) : QObject(adapter) {}

CAxHandleAdapterEditor::~CAxHandleAdapterEditor() = default;
