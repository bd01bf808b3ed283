#include "input/StrictLoads.h"

#include "core/ModelFileFormats.h"

namespace tarnvexo {

namespace {

void ReadShellLoads(StrictTables& tables, RecordChecks& checks, TableId id, const char* countFormat, TableId elements,
                    int& count, std::vector<ShellDistributedLoad>& loads)
{
    FirstUses uses(static_cast<std::size_t>(tables[elements].recordCount));
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(id);
        ShellDistributedLoad& load = loads.emplace_back();
        const ScanResult scan = tables.Scanner().Scan<formats::ShellLoad>(load.element, load.pressure[0],
                                                                          load.pressure[1], load.pressure[2]);
        if (!tables.Fits(scan, name)) {
            return false;
        }
        for (int k = 0; k < 3; ++k) { checks.IsFinite(load.pressure[k], scan.fieldBegin[1 + k], name); }
        if (checks.InTable(load.element, elements, scan.fieldBegin[0], name)) {
            checks.CheckFirst(uses, RuleId::DuplicateLoad, load.element, tables[elements].record, scan.fieldBegin[0],
                              name);
        }
        return true;
    };
    tables.ReadTable(id, countFormat, formats::ShortestShellLoad, count, readRecord, loads);
}

} // namespace

void ReadRestraints(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    FirstUses uses(model.NodeCoordinates.size());
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Restraints);
        Restraint& restraint = model.Restraints.emplace_back();
        const ScanResult nodeScan = tables.Scanner().Scan(formats::RestraintNode, restraint.node);
        if (!tables.Fits(nodeScan, name)) {
            return false;
        }
        for (int k = DX; k < DofsPerNode; ++k) {
            const ScanResult scan =
                tables.Scanner().Scan(k < RZ ? formats::RestraintFlag : formats::LastRestraintFlag, restraint.flags[k]);
            if (!tables.Fits(scan, name)) {
                return false;
            }
            checks.CheckFlag(restraint.flags[k], scan.fieldBegin[0], "leaves the direction free",
                             "1 holds the direction, 0 leaves it free", name);
        }
        if (checks.InTable(restraint.node, Nodes, nodeScan.fieldBegin[0], name)) {
            checks.CheckFirst(uses, RuleId::DuplicateRestraint, restraint.node, "node", nodeScan.fieldBegin[0], name);
        }
        return true;
    };
    tables.ReadTable(Restraints, formats::RestraintCount, formats::ShortestRestraint, model.NRN, readRecord,
                     model.Restraints);
}

void ReadForces(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    FirstUses uses(model.NodeCoordinates.size());
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(Forces);
        NodalForce& force = model.NodalForces.emplace_back();
        const ScanResult nodeScan = tables.Scanner().Scan<formats::ForceNode>(force.node);
        if (!tables.Fits(nodeScan, name)) {
            return false;
        }
        for (int k = DX; k < DofsPerNode; ++k) {
            const ScanResult scan = k < RZ ? tables.Scanner().Scan<formats::ForceComponent>(force.components[k])
                                           : tables.Scanner().Scan<formats::LastForceComponent>(force.components[k]);
            if (!tables.Fits(scan, name)) {
                return false;
            }
            checks.IsFinite(force.components[k], scan.fieldBegin[0], name);
        }
        if (checks.InTable(force.node, Nodes, nodeScan.fieldBegin[0], name)) {
            checks.CheckFirst(uses, RuleId::DuplicateLoad, force.node, "node", nodeScan.fieldBegin[0], name);
        }
        return true;
    };
    tables.ReadTable(Forces, formats::ForceCount, formats::ShortestForce, model.NFOR, readRecord, model.NodalForces);
}

void ReadQuadLoads(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    ReadShellLoads(tables, checks, QuadLoads, formats::QuadLoadCount, Quads, model.NDL_S_4ND,
                   model.QuadDistributedLoads);
}

void ReadTriLoads(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    ReadShellLoads(tables, checks, TriLoads, formats::TriLoadCount, Tris, model.NDL_S_3ND, model.TriDistributedLoads);
}

void ReadBeamLoads(ModelStore& model, StrictTables& tables, RecordChecks& checks)
{
    FirstUses uses(static_cast<std::size_t>(tables[Beams].recordCount));
    const auto readRecord = [&] {
        const RecordName name = tables.NameOfRecord(BeamLoads);
        BeamDistributedLoad& load = model.BeamDistributedLoads.emplace_back();
        const ScanResult scan = tables.Scanner().Scan<formats::BeamLoad>(load.element, load.q1, load.q2);
        if (!tables.Fits(scan, name)) {
            return false;
        }
        checks.IsFinite(load.q1, scan.fieldBegin[1], name);
        checks.IsFinite(load.q2, scan.fieldBegin[2], name);
        if (checks.InTable(load.element, Beams, scan.fieldBegin[0], name)) {
            checks.CheckFirst(uses, RuleId::DuplicateLoad, load.element, "beam", scan.fieldBegin[0], name);
        }
        return true;
    };
    tables.ReadTable(BeamLoads, formats::BeamLoadCount, formats::ShortestBeamLoad, model.NDL_B, readRecord,
                     model.BeamDistributedLoads);
}

} // namespace tarnvexo
