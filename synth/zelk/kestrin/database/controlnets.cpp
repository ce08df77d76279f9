#include "database/controlnets.h"

#include "containers/views.h"

Net* ControlNets::Of(const Instance* inst) const { return FromWord<Net*>(_net_of.GetValue(inst)); }

void ControlNets::Set(Instance* inst, Net* net) {
  if (const Net* former = Of(inst)) {
    MapItem* item = _instances_of.GetItem(former);
    while (item && item->Value() != inst) item = _instances_of.GetNextSameKeyItem(item);
    _instances_of.Remove(item);
    _net_of.Remove(static_cast<const void*>(inst));
  }
  if (!net) return;
  _net_of.Insert(inst, net);
  _instances_of.Insert(net, inst, /*force_overwrite*/ 0, /*force_insert*/ 1);
}

void ControlNets::Replace(const Net* net, Net* other) {
  if (net == other) return;
  while (MapItem* item = _instances_of.GetItem(net)) Set(FromWord<Instance*>(item->Value()), other);
}
