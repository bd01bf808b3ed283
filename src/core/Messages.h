// core/Messages.h
// Every console and notice text of a run, once, as the user sees it. UTF-8 here; GBK on the way out.
#pragma once

namespace tarnvexo::messages {

// Banner, printed at the start and after the solution.
constexpr const char* BannerRule = "-----------------------------";
constexpr const char* BannerProgram = "tarnvexo";
constexpr const char* BannerSubject = "Static analysis of shells and beams with inertia relief";
constexpr const char* BannerRevision = "2026.7.18开始修订";

// Model file.
constexpr const char* FileReadWarning = "File Read Error!";
constexpr const char* PreprocessorFileError = "Preprocessor file read error!";
constexpr const char* ReleaseError = "Release File Number error!";
constexpr const char* NodeCountError = "错误!";

// Assembly and solution.
constexpr const char* Assembling = "Assembling the global stiffness matrix...";
constexpr const char* MemoryBegin = "The global stiffness matrix will occupy ";
constexpr const char* MemoryEnd = " GB of memory space.";
constexpr const char* Solving = "Solute the equilibrium equations...";
constexpr const char* SolutionTime = "(Solution time:%.2lf seconds)\n";

// Mass properties and inertia relief.
constexpr const char* CentroidBegin = "结构质心坐标(";
constexpr const char* CentroidEnd = ").";
constexpr const char* TotalMass = "模型总质量=";
constexpr const char* TranslationalMass = "模型平动质量阵:";
constexpr const char* TranslationalLoad = "模型平动载荷向量:";
constexpr const char* TranslationalAcceleration = "模型平动加速度向量:";
constexpr const char* RotationalMass = "模型转动质量阵:";
constexpr const char* RotationalLoad = "模型转动载荷向量:";
constexpr const char* RotationalAcceleration = "模型转动加速度向量:";
constexpr const char* LoadsBefore = "平衡前GLOAD：";
constexpr const char* LoadsAfter = "平衡后GLOAD：";
constexpr const char* ResultantBefore = "平衡前结构受到的集中力合力:";
constexpr const char* ResultantAfter = "平衡后结构受到的集中力合力:";

// Result files.
constexpr const char* DxfFileError = "文件输出失败!";
constexpr const char* DisplacementFileError = "节点位移文件输出失败!";
constexpr const char* ShellStressFileError = "单元节点应力文件输出失败!";
constexpr const char* ContourFileError = "节点应力文件输出失败!";
constexpr const char* BeamSectionTypeError = "梁截面类型数字错误!";

// Viewer.
constexpr const char* ViewerMissing =
    "Program \"Tarn+Vexo_Contour.exe\"does not exist! Please copy it to the current folder and run it.";

} // namespace tarnvexo::messages
